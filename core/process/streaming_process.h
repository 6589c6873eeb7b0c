#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/async/task.h"
#include "core/process/environment.h"

namespace tarnwick {

/// Takes one line of a tool's output, without its line end. Called on threads that are not the main
/// thread, one call after the other, in the order of the output. It may block, which slows the tool
/// down through its pipe.
using LineCallback = std::function<void(std::string_view line)>;

/// One run of a long-running tool whose output is shown while it runs. Made for one run: once
/// cancelled it stays so.
class StreamingProcess {
 public:
  StreamingProcess() = default;
  StreamingProcess(const StreamingProcess&) = delete;
  StreamingProcess& operator=(const StreamingProcess&) = delete;
  virtual ~StreamingProcess() = default;

  /// The tool could not be started; one line said why.
  static constexpr std::int32_t couldNotStart = -1;
  /// Cancelled before the tool was started; nothing ran and no line was passed.
  static constexpr std::int32_t cancelledBeforeStart = -2;

  /// Runs the tool at the full path `exe` to its end, without a time limit, its standard output and
  /// standard error merged. Gives the exit status (128 + n when signal n ended it), or one of the
  /// two values above. Main thread.
  virtual Task<std::int32_t> run(std::string exe, std::vector<std::string> args, Environment env,
                                 LineCallback onLine) = 0;

  /// Asks the tool to end (SIGTERM), now or as soon as it would be started. Any thread, any number
  /// of times.
  virtual void cancel() = 0;
};

/// Makes the streaming process of one run.
using StreamingProcessFactory = std::function<std::shared_ptr<StreamingProcess>()>;

}  // namespace tarnwick
