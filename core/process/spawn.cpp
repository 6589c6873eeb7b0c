#include "core/process/spawn.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

/// The C library's clone() under the name that the thread sanitizer leaves alone: it would take the
/// new process for a copy of this one, memory and all.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" int __clone(int (*run)(void*), void* stack, int flags, void* data, ...);

namespace tarnwick {
namespace {

/// What the new process is made of. It lives in the memory of the thread that starts it, which
/// stands still until the tool has its image or there is none.
struct NewProcess {
  const char* exe;
  char* const* argv;
  char* const* envp;
  int output;
  int error;
  int failure;  ///< 0, or why there is no tool
};

#if defined(__clang__)
#define TARNWICK_UNWATCHED __attribute__((no_sanitize("address", "thread", "undefined")))
#else
#define TARNWICK_UNWATCHED __attribute__((no_sanitize_address, no_sanitize_thread))
#endif

/// The signals that somebody may have ignored to some effect. Those of a fault end a tool whether
/// it ignores them or not, and those above these are what libraries agree on among themselves. Each
/// of them costs a third of a microsecond.
constexpr int ignorableSignals[] = {
    SIGHUP,  SIGINT,  SIGQUIT, SIGUSR1, SIGUSR2, SIGPIPE,   SIGALRM, SIGTERM,  SIGCHLD, SIGCONT,
    SIGTSTP, SIGTTIN, SIGTTOU, SIGURG,  SIGXCPU, SIGVTALRM, SIGPROF, SIGWINCH, SIGXFSZ, SIGIO};

/// Blocked and ignored signals are inherited over exec: a tool started from a thread that blocks
/// SIGTERM could not be asked to end. Exec itself undoes handlers.
TARNWICK_UNWATCHED void resetSignals() {
  constexpr std::size_t maskSize = 8;
  // What the kernel takes for "the default, no flags, nothing blocked", on every architecture.
  const unsigned long defaultAction[4] = {};
  for (const int signal : ignorableSignals) {
    ::syscall(SYS_rt_sigaction, signal, &defaultAction[0], nullptr, maskSize);
  }
  ::syscall(SYS_rt_sigprocmask, SIG_SETMASK, &defaultAction[0], nullptr, maskSize);
}

/// Libraries of this process leave descriptors without close-on-exec.
TARNWICK_UNWATCHED void closeOthers() {
  if (::syscall(SYS_close_range, STDERR_FILENO + 1, ~0U, 0) == 0) return;
  // Older kernels, and containers that do not know the call.
  rlimit limit;
  if (::syscall(SYS_prlimit64, 0, RLIMIT_NOFILE, nullptr, &limit) != 0) return;
  constexpr rlim_t most = 1U << 20U;
  const rlim_t end = limit.rlim_cur < most ? limit.rlim_cur : most;
  for (rlim_t file = STDERR_FILENO + 1; file < end; ++file) ::syscall(SYS_close, file);
}

/// The new process, in this one's memory and on a stack of its own. It makes system calls by their
/// numbers only: the C library's functions (or a sanitizer's in their place) note what they have
/// done in tables that still are this process's.
TARNWICK_UNWATCHED int becomeTool(void* data) {
  auto& process = *static_cast<NewProcess*>(data);
  // It takes the lowest number, 0, once that is free.
  ::syscall(SYS_close, STDIN_FILENO);
  if (::syscall(SYS_openat, AT_FDCWD, "/dev/null", O_RDONLY, 0) == STDIN_FILENO &&
      ::syscall(SYS_dup3, process.output, STDOUT_FILENO, 0) >= 0 &&
      ::syscall(SYS_dup3, process.error, STDERR_FILENO, 0) >= 0) {
    closeOthers();
    resetSignals();
    ::syscall(SYS_execve, process.exe, process.argv, process.envp);
  }
  process.failure = errno;
  ::syscall(SYS_exit_group, 127);
  return 127;
}

bool holdsNul(const std::string& text) {
  return text.find('\0') != std::string::npos;
}

/// The texts that a new process is to be given; they stay where they are. Nobody writes to them.
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

/// The C library's posix_spawn does the same on a stack that it maps and unmaps each time, which is
/// a measurable part of a short tool's whole run.
pid_t spawnOnce(NewProcess& process) {
  alignas(64) std::array<char, std::size_t{16} * 1024> stack;
  sigset_t all;
  sigset_t before;
  ::sigfillset(&all);
  // A handler of ours must not run in the new process, which would run it on our memory.
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  process.failure = 0;
  const pid_t pid = ::__clone(becomeTool, stack.data() + stack.size(),
                              CLONE_VM | CLONE_VFORK | SIGCHLD, &process);
  if (pid < 0) process.failure = errno;
  if (pid > 0 && process.failure != 0) ::waitpid(pid, nullptr, 0);
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return pid;
}

}  // namespace

pid_t spawnTool(const std::string& exe, const std::vector<std::string>& args,
                const Environment& environment, int output, int error, std::error_code& reason) {
  if (!canBePassed(exe, args, environment)) {
    reason = std::make_error_code(std::errc::invalid_argument);
    return -1;
  }
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
  NewProcess process{exe.c_str(), argv.terminated(), envp.terminated(), output, error, 0};

  // Another thread's child may hold a freshly written file open for a moment, between fork and
  // exec.
  constexpr int tries = 10;
  constexpr auto pause = std::chrono::milliseconds(10);
  for (int i = 0; i < tries; ++i) {
    if (i > 0) std::this_thread::sleep_for(pause);
    const pid_t pid = spawnOnce(process);
    if (process.failure == 0) return pid;
    if (process.failure != ETXTBSY) break;
  }
  reason = std::error_code(process.failure, std::generic_category());
  return -1;
}

}  // namespace tarnwick
