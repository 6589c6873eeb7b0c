#include "core/process/spawn.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <thread>
#include <unistd.h>

namespace tarnwick {
namespace {

class FileActions {
 public:
  FileActions(int output, int error) {
    ::posix_spawn_file_actions_init(&actions_);
    note(::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
    note(::posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO));
    note(::posix_spawn_file_actions_adddup2(&actions_, error, STDERR_FILENO));
    // Libraries of this process leave descriptors without close-on-exec.
    note(::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));
  }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;
  ~FileActions() { ::posix_spawn_file_actions_destroy(&actions_); }

  [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }
  [[nodiscard]] int error() const { return error_; }

 private:
  void note(int error) {
    if (error != 0) error_ = error;
  }
  posix_spawn_file_actions_t actions_;
  int error_ = 0;
};

/// Blocked and ignored signals are inherited over exec: a tool started from a thread that blocks
/// SIGTERM could not be asked to end.
class DefaultSignals {
 public:
  DefaultSignals() {
    ::posix_spawnattr_init(&attributes_);
    sigset_t signals;
    ::sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes_, &signals);
    ::sigfillset(&signals);
    ::posix_spawnattr_setsigdefault(&attributes_, &signals);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  DefaultSignals(const DefaultSignals&) = delete;
  DefaultSignals& operator=(const DefaultSignals&) = delete;
  ~DefaultSignals() { ::posix_spawnattr_destroy(&attributes_); }

  [[nodiscard]] const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_;
};

bool holdsNul(const std::string& text) {
  return text.find('\0') != std::string::npos;
}

/// The texts that posix_spawn is to be given; they stay where they are. It does not write to them.
class TextList {
 public:
  void add(const char* text) { pointers_.push_back(const_cast<char*>(text)); }
  void reserve(std::size_t count) { pointers_.reserve(count + 1); }
  [[nodiscard]] char* const* terminated() {
    pointers_.push_back(nullptr);
    return pointers_.data();
  }

 private:
  std::vector<char*> pointers_;
};

/// The environment as one block of texts "NAME=value", each ended by a zero byte.
std::string blockOf(const Environment& environment) {
  std::size_t size = 0;
  for (const auto& [name, value] : environment) size += name.size() + value.size() + 2;
  std::string block;
  block.reserve(size);
  for (const auto& [name, value] : environment) {
    block.append(name).append(1, '=').append(value).append(1, '\0');
  }
  return block;
}

/// A text that would reach the tool cut short must not reach it at all.
bool canBePassed(const std::string& exe, const std::vector<std::string>& args,
                 const Environment& environment) {
  const auto variableCanBePassed = [](const auto& variable) {
    return !holdsNul(variable.first) && !holdsNul(variable.second) && !variable.first.empty() &&
           variable.first.find('=') == std::string::npos;
  };
  return !holdsNul(exe) && std::ranges::none_of(args, holdsNul) &&
         std::ranges::all_of(environment, variableCanBePassed);
}

int spawnOnce(const std::string& exe, const FileActions& actions, char* const* argv,
              char* const* envp, pid_t& pid) {
  const DefaultSignals signals;
  return ::posix_spawn(&pid, exe.c_str(), actions.get(), signals.get(), argv, envp);
}

}  // namespace

pid_t spawnTool(const std::string& exe, const std::vector<std::string>& args,
                const Environment& environment, int output, int error, std::error_code& reason) {
  int failure = canBePassed(exe, args, environment) ? 0 : EINVAL;
  const FileActions actions(output, error);
  if (failure == 0) failure = actions.error();

  TextList argv;
  argv.reserve(args.size() + 1);
  argv.add(exe.c_str());
  for (const std::string& text : args) argv.add(text.c_str());
  TextList envp;
  envp.reserve(environment.size());
  const std::string block = blockOf(environment);
  for (std::size_t at = 0; at < block.size(); at = block.find('\0', at) + 1) {
    envp.add(block.c_str() + at);
  }
  char* const* const arguments = argv.terminated();
  char* const* const variables = envp.terminated();

  // Another thread's child may hold a freshly written file open for a moment, between fork and
  // exec.
  constexpr int tries = 10;
  constexpr auto pause = std::chrono::milliseconds(10);
  pid_t pid = -1;
  for (int i = 0; failure == 0 && i < tries; ++i) {
    if (i > 0) std::this_thread::sleep_for(pause);
    const int result = spawnOnce(exe, actions, arguments, variables, pid);
    if (result == 0) return pid;
    if (result != ETXTBSY || i + 1 == tries) failure = result;
  }
  reason = std::error_code(failure, std::generic_category());
  return -1;
}

}  // namespace tarnwick
