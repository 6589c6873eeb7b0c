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

/// A text that would reach the tool cut short must not reach it at all.
bool canBePassed(const ToolCommand& command) {
  const auto variableCanBePassed = [](const auto& variable) {
    return !holdsNul(variable.first) && !holdsNul(variable.second) && !variable.first.empty() &&
           variable.first.find('=') == std::string::npos;
  };
  return !holdsNul(command.exe) && std::ranges::none_of(command.args, holdsNul) &&
         std::ranges::all_of(command.environment, variableCanBePassed);
}

std::vector<char*> nullTerminated(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

int spawnOnce(const std::string& exe, const FileActions& actions, char* const* argv,
              char* const* envp, pid_t& pid) {
  const DefaultSignals signals;
  return ::posix_spawn(&pid, exe.c_str(), actions.get(), signals.get(), argv, envp);
}

}  // namespace

pid_t spawnTool(const ToolCommand& command, int output, int error, std::error_code& reason) {
  int failure = canBePassed(command) ? 0 : EINVAL;
  const FileActions actions(output, error);
  if (failure == 0) failure = actions.error();

  std::vector<std::string> arguments{command.exe};
  arguments.insert(arguments.end(), command.args.begin(), command.args.end());
  std::vector<std::string> variables;
  variables.reserve(command.environment.size());
  for (const auto& [name, value] : command.environment) variables.push_back(name + "=" + value);
  const auto argv = nullTerminated(arguments);
  const auto envp = nullTerminated(variables);

  // Another thread's child may hold a freshly written file open for a moment, between fork and
  // exec.
  constexpr int tries = 10;
  constexpr auto pause = std::chrono::milliseconds(10);
  pid_t pid = -1;
  for (int i = 0; failure == 0 && i < tries; ++i) {
    if (i > 0) std::this_thread::sleep_for(pause);
    const int result = spawnOnce(command.exe, actions, argv.data(), envp.data(), pid);
    if (result == 0) return pid;
    if (result != ETXTBSY || i + 1 == tries) failure = result;
  }
  reason = std::error_code(failure, std::generic_category());
  return -1;
}

}  // namespace tarnwick
