#include <charconv>
#include <chrono>
#include <ctime>
#include <fmt/format.h>
#include <signal.h>
#include <unistd.h>

#include "practice/console.h"
#include "practice/container.h"
#include "practice/refusal.h"
#include "practice/tool.h"

namespace tarnwick::practice {
namespace {

void log(std::string_view level, std::string_view message, std::string_view context = {}) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  char stamp[40] = {};
  std::strftime(stamp, sizeof stamp, "%Y-%m-%dT%H:%M:%S%z", &local);
  const bool bare = message.find(' ') == std::string_view::npos;
  complain(fmt::format("time=\"{}\" level={} msg={}{}{}{}{}", stamp, level, bare ? "" : "\"",
                       message, bare ? "" : "\"", context.empty() ? "" : " context=", context));
}

[[noreturn]] void refuse(std::string_view message) {
  throw Refusal(1, fmt::format("Error: {}\nRun 'colima --help' for usage.", message));
}

struct Sizes {
  int cpu = 2;
  int memory = 2;
  int disk = 100;
  std::string mount;
};

int positive(const std::string& flag, const std::string& text) {
  int value = 0;
  const char* end = text.data() + text.size();
  if (std::from_chars(text.data(), end, value).ptr != end || value < 1) {
    refuse(fmt::format("invalid argument \"{}\" for \"{}\" flag", text, flag));
  }
  return value;
}

Sizes readSizes(Words rest) {
  Sizes sizes;
  while (!rest.empty()) {
    const std::string& flag = rest[0];
    if (flag != "--cpu" && flag != "--memory" && flag != "--disk" && flag != "--mount") {
      refuse(fmt::format("unknown flag: {}", flag));
    }
    if (rest.size() < 2) refuse(fmt::format("flag needs an argument: {}", flag));
    if (flag == "--cpu") sizes.cpu = positive(flag, rest[1]);
    if (flag == "--memory") sizes.memory = positive(flag, rest[1]);
    if (flag == "--disk") sizes.disk = positive(flag, rest[1]);
    if (flag == "--mount") sizes.mount = rest[1];
    rest = rest.subspan(2);
  }
  return sizes;
}

/// A process of its own session with our standard output and error, like the tunnel that the real
/// tool leaves behind.
void leaveHolder(const Call& call) {
  const pid_t pid = ::fork();
  if (pid != 0) return;
  ::setsid();
  hang(call.folder.path());
  ::_exit(0);
}

void strikeStart(const Call& call) {
  if (call.faults.has(Fault::ColimaHoldsPipe)) leaveHolder(call);
  if (call.faults.has(Fault::ColimaStartHangs)) {
    hang(call.folder.path());
    throw Refusal(1, "");
  }
  if (call.faults.has(Fault::ColimaStartFails)) {
    log("fatal", "error starting vm: error at 'creating and starting': exit status 1");
    throw Refusal(1, "");
  }
}

int start(const Call& call, Words rest) {
  const Sizes sizes = readSizes(rest);
  complain(kLabel);
  if (call.folder.load().engineUp) {
    log("warning", "already running, ignoring");
    return 0;
  }
  log("info", "starting colima");
  log("info", "runtime: docker");
  pauseFor(0.8);
  log("info", "creating and starting ...", "vm");
  strikeStart(call);
  pauseFor(2.0);
  log("info", "provisioning ...", "docker");
  pauseFor(0.8);
  log("info", "starting ...", "docker");
  pauseFor(0.6);
  call.folder.update([&](State& state) {
    if (state.engineUp) return;
    state.engineUp = true;
    state.cpu = sizes.cpu;
    state.memory = sizes.memory;
    state.disk = sizes.disk;
    state.mount = sizes.mount;
    resumeContainer(call.folder, call.faults, state);
  });
  log("info", "done");
  return 0;
}

int stop(const Call& call) {
  log("info", "stopping colima");
  if (call.faults.has(Fault::ColimaStopHangs)) {
    hang(call.folder.path());
    return 1;
  }
  if (call.faults.has(Fault::ColimaStopFails)) {
    log("fatal", "error at 'stopping': exit status 1", "vm");
    return 1;
  }
  log("info", "stopping ...", "docker");
  pauseFor(0.5);
  log("info", "stopping ...", "vm");
  pauseFor(0.8);
  call.folder.update([](State& state) {
    suspendContainer(state);
    state.engineUp = false;
  });
  log("info", "done");
  return 0;
}

int status(const Call& call) {
  const State state = call.folder.load();
  if (!state.engineUp) {
    log("fatal", "colima is not running");
    return 1;
  }
  log("info", "colima is running using the practice engine");
  log("info",
      fmt::format("cpu: {}, memory: {}GiB, disk: {}GiB", state.cpu, state.memory, state.disk));
  return 0;
}

}  // namespace

int runColima(const Call& call) {
  const Words words(call.arguments);
  const std::string command = words.empty() ? "" : words[0];
  if (command == "start") return start(call, words.subspan(1));
  if (words.size() > 1)
    refuse(fmt::format("unknown argument \"{}\" for \"colima {}\"", words[1], command));
  if (command == "stop") return stop(call);
  if (command == "status") return status(call);
  if (command == "version" || command == "--version") {
    say(fmt::format("colima version {}", kColimaVersion));
    return 0;
  }
  if (command.empty() || command == "--help" || command == "help") {
    say("The practice engine's stand-in for colima: start, stop, status, version");
    return 0;
  }
  refuse(fmt::format("unknown command \"{}\" for \"colima\"", command));
}

}  // namespace tarnwick::practice
