#pragma once

#include <string>
#include <vector>

#include "core/async/task.h"
#include "core/process/command_result.h"
#include "core/process/environment.h"

namespace tarnwick {

/// Runs short-lived tools. Every failure is told by the result; nothing throws.
class CommandRunner {
 public:
  CommandRunner() = default;
  CommandRunner(const CommandRunner&) = delete;
  CommandRunner& operator=(const CommandRunner&) = delete;
  virtual ~CommandRunner() = default;

  /// Runs the tool at the full path `exe`, without a shell, and resumes the awaiting task with its
  /// result. `timeout` is in seconds; a tool that ignores the request to end is given up on after 3
  /// more. `env` is added to the tool's prepared environment. Cannot be cancelled. Main thread.
  virtual Task<CommandResult> run(std::string exe, std::vector<std::string> args, double timeout,
                                  Environment env) = 0;
};

}  // namespace tarnwick
