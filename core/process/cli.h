#pragma once

#include <memory>

#include "core/async/main_thread.h"
#include "core/async/worker_queue.h"
#include "core/process/command_runner.h"
#include "core/process/tools.h"

namespace tarnwick {

/// Runs short-lived tools as child processes. `tools`, `workers` and `mainThread` outlive every
/// run.
class CLI final : public CommandRunner {
 public:
  CLI(const Tools& tools, WorkerQueue& workers, MainThread& mainThread);
  ~CLI() override;

  /// As run(), on the calling thread, which waits. Any thread but one that must stay responsive.
  [[nodiscard]] CommandResult runSync(const std::string& exe, const std::vector<std::string>& args,
                                      double timeout, const Environment& env) const;

  Task<CommandResult> run(std::string exe, std::vector<std::string> args, double timeout,
                          Environment env) override;

 private:
  class Runner;
  std::shared_ptr<Runner> runner_;  ///< shared with the runs under way
  WorkerQueue& workers_;
  MainThread& mainThread_;
};

}  // namespace tarnwick
