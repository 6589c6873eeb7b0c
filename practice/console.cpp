#include "practice/console.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <signal.h>
#include <string>
#include <thread>
#include <unistd.h>

namespace tarnwick::practice {
namespace {

void writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
    if (count < 0) {
      if (errno == EINTR) continue;
      return;
    }
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void writeLine(int descriptor, std::string_view line) {
  // One call a line keeps the lines of two streams that share a pipe whole.
  writeAll(descriptor, std::string(line) + '\n');
}

extern "C" void endAtOnce(int signal) {
  ::_exit(128 + signal);
}

}  // namespace

void say(std::string_view line) {
  writeLine(STDOUT_FILENO, line);
}
void complain(std::string_view line) {
  writeLine(STDERR_FILENO, line);
}
void write(std::string_view bytes) {
  writeAll(STDOUT_FILENO, bytes);
}

void flood(std::string_view block) {
  const char* text = std::getenv("TARNWICK_PRACTICE_FLOOD_MB");
  const unsigned long megabytes = text == nullptr ? 1'000 : std::strtoul(text, nullptr, 10);
  for (std::size_t sent = 0; sent < megabytes * 1'000'000; sent += block.size()) write(block);
}

double pace() {
  const char* text = std::getenv("TARNWICK_PRACTICE_PACE");
  if (text == nullptr || *text == '\0') return 1.0;
  char* end = nullptr;
  const double value = std::strtod(text, &end);
  if (*end != '\0' || !(value >= 0.0)) return 1.0;
  return std::min(value, 100.0);
}

void pauseFor(double seconds) {
  waitFor(seconds * pace());
}

void waitFor(double seconds) {
  if (seconds > 0.0) std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

std::filesystem::path hangingMark(const std::filesystem::path& folder, pid_t pid) {
  return folder / ("hanging." + std::to_string(pid));
}

void hang(const std::filesystem::path& folder) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::hours(1);
  std::error_code ignored;
  const std::ofstream mark(hangingMark(folder, ::getpid()));
  while (std::chrono::steady_clock::now() < end && std::filesystem::exists(folder, ignored)) {
    waitFor(0.5);
  }
}

void endOnSignals() {
  struct sigaction action = {};
  action.sa_handler = endAtOnce;
  ::sigaction(SIGTERM, &action, nullptr);
  ::sigaction(SIGINT, &action, nullptr);
}

}  // namespace tarnwick::practice
