#pragma once

#include <memory>

#include "core/async/main_thread.h"
#include "core/async/worker_queue.h"
#include "core/process/streaming_process.h"
#include "core/process/tools.h"

namespace tarnwick {

/// Streams the output of one child process. `tools`, `workers` and `mainThread` outlive the run,
/// which goes on when this object is destroyed: only cancel() ends a tool.
class ToolStream final : public StreamingProcess {
 public:
  ToolStream(const Tools& tools, WorkerQueue& workers, MainThread& mainThread);
  ~ToolStream() override;

  Task<std::int32_t> run(std::string exe, std::vector<std::string> args, Environment env,
                         LineCallback onLine) override;
  void cancel() override;

  /// Makes a ToolStream for each run.
  [[nodiscard]] static StreamingProcessFactory factory(const Tools& tools, WorkerQueue& workers,
                                                       MainThread& mainThread);

 private:
  class Control;
  static std::int32_t runBlocking(Control& control, const Tools& tools, const std::string& exe,
                                  const std::vector<std::string>& args, const Environment& env,
                                  const LineCallback& onLine);

  std::shared_ptr<Control> control_;  ///< shared with the run under way
  const Tools& tools_;
  WorkerQueue& workers_;
  MainThread& mainThread_;
};

}  // namespace tarnwick
