#pragma once

#include <cstdint>
#include <memory>

#include "core/async/task.h"
#include "core/process/command_runner.h"
#include "core/process/streaming_process.h"
#include "core/process/tool_finder.h"

namespace tarnwick {

/// The virtual machine and the installation of its tools. None of the operations fails otherwise
/// than through its result. Main thread.
class ColimaManager {
 public:
  ColimaManager(CommandRunner& runner, const ToolFinder& tools);

  /// The docker engine answers.
  Task<bool> dockerReachable();
  Task<CommandResult> stop();
  Task<CommandResult> setStartAtLogin(bool on);
  /// Installs what is missing of colima and docker with Homebrew, through `stream`. 0 when nothing
  /// was missing; -1 without Homebrew; else the stream's result.
  Task<std::int32_t> install(std::shared_ptr<StreamingProcess> stream, LineCallback onLine);

 private:
  CommandRunner& runner_;
  const ToolFinder& tools_;
};

}  // namespace tarnwick
