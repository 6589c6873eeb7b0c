#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <system_error>
#include <variant>
#include <vector>

#include "core/async/main_thread.h"
#include "core/process/environment.h"
#include "core/process/file_descriptor.h"

namespace tarnwick {

/// Whether standard output and standard error come through a pipe each, or through one in the order
/// in which the tool writes.
enum class OutputPipes { separate, merged };

enum class OutputStream : std::size_t { output = 0, error = 1 };

/// Takes a piece of what a tool wrote; the bytes are gone after the call. Merged output comes as
/// `OutputStream::output`.
using OutputSink = std::function<void(OutputStream stream, std::string_view bytes)>;

/// One started tool and the pipes to it. Used by one thread at a time, except for terminate().
/// The destructor closes the pipes and waits for nothing: a tool that still runs goes on.
class ChildProcess {
 public:
  /// Starts the tool at the full path `exe` in exactly this environment, or gives the reason why it
  /// could not be started.
  [[nodiscard]] static std::variant<ChildProcess, std::error_code> start(
      const std::string& exe, const std::vector<std::string>& args, const Environment& environment,
      OutputPipes pipes);

  ChildProcess(ChildProcess&& other) noexcept;
  ChildProcess& operator=(ChildProcess&& other) noexcept;
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  /// Passes the output on until the tool has ended, or until `deadline`; gives whether it has
  /// ended. What the tool wrote before its end is passed on in full. A process that the tool left
  /// behind with the pipe open is not waited for.
  [[nodiscard]] bool readUntilEnd(std::optional<TimePoint> deadline, const OutputSink& sink);

  /// Closes the pipes: a tool that writes again fails.
  void closePipes();

  /// Asks the tool to end (SIGTERM), if it has not ended. Any thread, but not at the same time as
  /// reap() or the end of this object.
  void terminate() const;

  /// Frees a tool that has ended from the system's table. Gives its exit status, 128 + n when
  /// signal n ended it, -1 when the system does not tell, and none while the tool runs.
  [[nodiscard]] std::optional<std::int32_t> reap();

 private:
  ChildProcess(pid_t pid, std::array<FileDescriptor, 2> pipes);

  struct Ready;
  [[nodiscard]] Ready waitForNews(std::optional<TimePoint> deadline) const;
  void readAvailable(std::span<char> buffer, const OutputSink& sink);
  /// Gives the number of bytes read into `buffer`, 0 when there are none now or will be none.
  std::size_t readPiece(OutputStream stream, std::span<char> buffer, const OutputSink& sink);

  pid_t pid_;             ///< -1 once reaped
  FileDescriptor pidfd_;  ///< none on a system that gives none; then the pid is asked
  std::array<FileDescriptor, 2> pipes_;
  std::array<bool, 2> widened_{};
};

}  // namespace tarnwick
