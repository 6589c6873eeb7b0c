#include "practice/server_process.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <fstream>
#include <nlohmann/json.hpp>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sstream>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

#include "practice/console.h"
#include "practice/refusal.h"

namespace tarnwick::practice {
namespace {

constexpr double kStartDelaySeconds = 1.5;
constexpr double kSlowStartSeconds = 60.0;

/// Start time in clock ticks since boot of a process that lives; none for zombies and strangers.
std::optional<std::uint64_t> startTime(pid_t pid) {
  std::ifstream file(fmt::format("/proc/{}/stat", pid));
  std::string text;
  if (!std::getline(file, text)) return std::nullopt;
  // The second field is the program's name in parentheses and may hold anything.
  const std::size_t end = text.rfind(')');
  if (end == std::string::npos) return std::nullopt;
  std::istringstream fields(text.substr(end + 1));
  std::string field;
  fields >> field;
  if (field == "Z" || field == "X") return std::nullopt;
  for (int skip = 4; skip <= 21; ++skip) fields >> field;
  std::uint64_t start = 0;
  if (!(fields >> start)) return std::nullopt;
  return start;
}

std::filesystem::path serverProgram() {
  std::error_code error;
  const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
  return self.parent_path() / "tarnwick-practice-desktop";
}

std::string configuration(const StateFolder& folder, const Container& container,
                          const SignIn& signIn, const Faults& faults) {
  const ContainerRequest& request = container.request;
  nlohmann::json root = {
      {"stateFile", (folder.path() / "state.json").string()},
      {"volumeFolder", folder.volume(request.volume).string()},
      {"volume", request.volume},
      {"httpPort", request.httpPort},
      {"httpsPort", request.httpsPort},
      {"sharesFolder", !request.sharePath.empty()},
      {"user", signIn.user},
      {"locked", container.locked},
      {"startDelay",
       faults.has(Fault::DesktopSlow) ? kSlowStartSeconds : kStartDelaySeconds * pace()},
      {"faults", nlohmann::json::array()},
  };
  if (signIn.password) root["password"] = *signIn.password;
  for (Fault fault : faults.all()) root["faults"].push_back(std::string(nameOf(fault)));
  return root.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

/// Our environment without the two values that must stay out of a long-lived process's.
std::vector<char*> environmentWithoutSecrets() {
  std::vector<char*> kept;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    if (std::strncmp(*entry, "PASSWORD=", 9) == 0) continue;
    if (std::strncmp(*entry, "CUSTOM_USER=", 12) == 0) continue;
    kept.push_back(*entry);
  }
  kept.push_back(nullptr);
  return kept;
}

pid_t spawnServer(const std::filesystem::path& log, int input) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, log.c_str(),
                                   O_WRONLY | O_CREAT | O_APPEND, 0600);
  posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
  posix_spawn_file_actions_addclosefrom_np(&actions, 3);
  posix_spawn_file_actions_addchdir_np(&actions, "/");

  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t set;
  sigemptyset(&set);
  posix_spawnattr_setsigmask(&attributes, &set);
  sigfillset(&set);
  posix_spawnattr_setsigdefault(&attributes, &set);
  posix_spawnattr_setflags(&attributes,
                           POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

  const std::string program = serverProgram().string();
  std::string name = program;
  std::array<char*, 2> arguments = {name.data(), nullptr};
  std::vector<char*> environment = environmentWithoutSecrets();
  pid_t pid = -1;
  const int error = ::posix_spawn(&pid, program.c_str(), &actions, &attributes, arguments.data(),
                                  environment.data());
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    throw Refusal(125, fmt::format("Practice engine: the practice desktop {} cannot start: {}",
                                   program, std::strerror(error)));
  }
  return pid;
}

}  // namespace

SignIn SignIn::fromEnvironment(const ContainerRequest& request) {
  SignIn result{"abc", std::nullopt};
  for (const std::string& entry : request.environment) {
    const char* value = std::getenv(entry.c_str());
    if (value == nullptr) continue;
    if (entry == "CUSTOM_USER" && *value != '\0') result.user = value;
    if (entry == "PASSWORD" && *value != '\0') result.password = value;
  }
  return result;
}

void startServer(const StateFolder& folder, Container& container, const SignIn& signIn,
                 const Faults& faults) {
  std::error_code error;
  std::filesystem::create_directories(folder.volume(container.request.volume), error);
  if (error) {
    throw Refusal(125, fmt::format("docker: Error response from daemon: {}.", error.message()));
  }
  const std::string text = configuration(folder, container, signIn, faults);
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw Refusal(125, "Practice engine: there are no descriptors left.");
  }
  pid_t pid = -1;
  try {
    pid = spawnServer(folder.containerLog(), ends[0]);
  } catch (...) {
    ::close(ends[0]);
    ::close(ends[1]);
    throw;
  }
  ::close(ends[0]);
  // A server that has died already must not end us: its death shows in the container's state.
  ::signal(SIGPIPE, SIG_IGN);
  std::string_view rest = text;
  while (!rest.empty()) {
    const ssize_t count = ::write(ends[1], rest.data(), rest.size());
    if (count < 0 && errno != EINTR) break;
    if (count > 0) rest.remove_prefix(static_cast<std::size_t>(count));
  }
  ::close(ends[1]);
  ::signal(SIGPIPE, SIG_DFL);
  container.serverPid = pid;
  container.serverStart = startTime(pid).value_or(0);
}

bool serverAlive(const Container& container) {
  if (container.serverPid <= 0) return false;
  const auto start = startTime(container.serverPid);
  return start && *start == container.serverStart;
}

void endServer(Container& container) {
  const auto descriptor = container.serverPid <= 0
                              ? -1
                              : static_cast<int>(::syscall(SYS_pidfd_open, container.serverPid, 0));
  // Compared after the descriptor is held, so that the signal cannot reach a successor of the pid.
  if (descriptor >= 0 && serverAlive(container)) {
    for (const int signal : {SIGTERM, SIGKILL}) {
      ::syscall(SYS_pidfd_send_signal, descriptor, signal, nullptr, 0);
      pollfd gone{descriptor, POLLIN, 0};
      if (::poll(&gone, 1, 1500) > 0) break;
    }
  }
  if (descriptor >= 0) ::close(descriptor);
  container.serverPid = 0;
  container.serverStart = 0;
}

}  // namespace tarnwick::practice
