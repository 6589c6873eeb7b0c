#include "core/process/child_process.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "core/process/spawn.h"

namespace tarnwick {
namespace {

constexpr std::size_t bufferSize = 64 * 1024;
constexpr int widePipe = 1024 * 1024;  // the most that the system grants by default
/// How often a tool is looked after where the system does not announce its end.
constexpr auto lookInterval = std::chrono::milliseconds(10);

// The C library's header for these two has no C linkage for C++ in the version that we build with.
int pidfdOpen(pid_t pid) {
  return static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
}

bool pidfdSendSignal(int pidfd, int signal) {
  return ::syscall(SYS_pidfd_send_signal, pidfd, signal, nullptr, 0) == 0;
}

struct Pipe {
  FileDescriptor readEnd;
  FileDescriptor writeEnd;
};

/// A process that was started without its standard descriptors would get pipes in their place,
/// which the child then overwrites.
bool moveAboveStandard(FileDescriptor& end) {
  if (end.get() > STDERR_FILENO) return true;
  end = FileDescriptor(::fcntl(end.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  return static_cast<bool>(end);
}

/// Both ends block: ours is read only after something in it was announced.
std::optional<Pipe> makePipe() {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return std::nullopt;
  Pipe pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
  if (!moveAboveStandard(pipe.readEnd) || !moveAboveStandard(pipe.writeEnd)) return std::nullopt;
  return pipe;
}

std::error_code lastError() {
  return {errno, std::generic_category()};
}

/// Whether the child has ended, leaving it to be reaped.
bool pidHasEnded(pid_t pid) {
  siginfo_t info{};
  const int options = WEXITED | WNOHANG | WNOWAIT;
  // Where nobody keeps the ended children (SIGCHLD ignored) there is none any more: ECHILD.
  if (::waitid(P_PID, static_cast<id_t>(pid), &info, options) != 0) return errno == ECHILD;
  return info.si_pid != 0;
}

}  // namespace

struct ChildProcess::Ready {
  bool tool = false;
  std::array<bool, 2> pipes{};
};

std::variant<ChildProcess, std::error_code> ChildProcess::start(
    const std::string& exe, const std::vector<std::string>& args, const Environment& environment,
    OutputPipes pipes) {
  std::optional<Pipe> output = makePipe();
  if (!output) return lastError();
  std::optional<Pipe> error;
  if (pipes == OutputPipes::separate) {
    error = makePipe();
    if (!error) return lastError();
  }
  const Pipe& errorPipe = error ? *error : *output;
  std::error_code reason;
  const pid_t pid =
      spawnTool(exe, args, environment, output->writeEnd.get(), errorPipe.writeEnd.get(), reason);
  if (pid < 0) return reason;
  std::array<FileDescriptor, 2> readEnds{std::move(output->readEnd),
                                         error ? std::move(error->readEnd) : FileDescriptor()};
  return ChildProcess(pid, std::move(readEnds));
}

ChildProcess::ChildProcess(pid_t pid, std::array<FileDescriptor, 2> pipes)
    : pid_(pid), pidfd_(pidfdOpen(pid)), pipes_(std::move(pipes)) {}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : pid_(std::exchange(other.pid_, -1)),
      pidfd_(std::move(other.pidfd_)),
      pipes_(std::move(other.pipes_)),
      widened_(other.widened_) {}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
  std::swap(pid_, other.pid_);
  std::swap(pidfd_, other.pidfd_);
  std::swap(pipes_, other.pipes_);
  std::swap(widened_, other.widened_);
  return *this;
}

ChildProcess::~ChildProcess() {
  static_cast<void>(reap());
}

bool ChildProcess::readUntilEnd(std::optional<TimePoint> deadline, const OutputSink& sink) {
  char space[bufferSize];  // not from the heap, which would give and take its pages at every run
  const std::span<char> buffer(space);
  while (true) {
    const Ready ready = waitForNews(deadline);
    // The end is looked at first: somebody whom the tool left behind may fill the pipe for ever.
    if (ready.tool) {
      readAvailable(buffer, sink);
      return true;
    }
    if (ready.pipes[0]) readPiece(OutputStream::output, buffer, sink);
    if (ready.pipes[1]) readPiece(OutputStream::error, buffer, sink);
    if (deadline && Clock::now() >= *deadline) return false;
  }
}

ChildProcess::Ready ChildProcess::waitForNews(std::optional<TimePoint> deadline) const {
  std::array<pollfd, 3> files{
      {{pipes_[0].get(), POLLIN, 0}, {pipes_[1].get(), POLLIN, 0}, {pidfd_.get(), POLLIN, 0}}};
  std::optional<Duration> wait;
  if (deadline) wait = std::max(*deadline - Clock::now(), Duration::zero());
  if (!pidfd_) wait = std::min<Duration>(wait.value_or(lookInterval), lookInterval);
  timespec limit{};
  if (wait) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(*wait);
    limit.tv_sec = seconds.count();
    limit.tv_nsec = std::chrono::nanoseconds(*wait - seconds).count();
  }
  Ready ready;
  const int count = ::ppoll(files.data(), files.size(), wait ? &limit : nullptr, nullptr);
  if (count > 0) {
    ready.pipes = {files[0].revents != 0, files[1].revents != 0};
    ready.tool = files[2].revents != 0;
  }
  if (!pidfd_) ready.tool = pidHasEnded(pid_);
  return ready;
}

void ChildProcess::readAvailable(std::span<char> buffer, const OutputSink& sink) {
  for (const OutputStream stream : {OutputStream::output, OutputStream::error}) {
    int available = 0;
    const int pipe = pipes_[static_cast<std::size_t>(stream)].get();
    if (pipe < 0 || ::ioctl(pipe, FIONREAD, &available) != 0) continue;
    auto left = static_cast<std::size_t>(std::max(available, 0));
    while (left > 0) {
      const std::size_t count =
          readPiece(stream, buffer.first(std::min(left, buffer.size())), sink);
      if (count == 0) break;
      left -= count;
    }
  }
}

std::size_t ChildProcess::readPiece(OutputStream stream, std::span<char> buffer,
                                    const OutputSink& sink) {
  const auto index = static_cast<std::size_t>(stream);
  FileDescriptor& pipe = pipes_[index];
  const ssize_t count = ::read(pipe.get(), buffer.data(), buffer.size());
  if (count <= 0) {
    const bool laterPerhaps = count < 0 && (errno == EINTR || errno == EAGAIN);
    if (!laterPerhaps) pipe.reset();
    return 0;
  }
  const auto size = static_cast<std::size_t>(count);
  // A tool that fills the pipe gets a wider one, so that the two of us take turns less often.
  if (size == bufferSize && !std::exchange(widened_[index], true)) {
    ::fcntl(pipe.get(), F_SETPIPE_SZ, widePipe);
  }
  sink(stream, std::string_view(buffer.data(), size));
  return size;
}

void ChildProcess::closePipes() {
  for (FileDescriptor& pipe : pipes_) pipe.reset();
}

void ChildProcess::terminate() const {
  if (pid_ < 0) return;
  if (pidfd_) {
    pidfdSendSignal(pidfd_.get(), SIGTERM);
  } else if (!pidHasEnded(pid_)) {
    ::kill(pid_, SIGTERM);
  }
}

std::optional<std::int32_t> ChildProcess::reap() {
  if (pid_ < 0) return -1;
  siginfo_t info{};
  int result = 0;
  do {
    result = ::waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG);
  } while (result != 0 && errno == EINTR);
  if (result == 0 && info.si_pid == 0) return std::nullopt;
  pid_ = -1;
  if (result != 0) return -1;
  return info.si_code == CLD_EXITED ? info.si_status : 128 + info.si_status;
}

}  // namespace tarnwick
