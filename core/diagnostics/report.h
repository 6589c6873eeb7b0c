#pragma once

#include <string>

#include "core/async/task.h"
#include "core/controller/desktop_controller.h"
#include "core/diagnostics/system_facts.h"
#include "core/process/command_runner.h"
#include "core/process/tool_finder.h"

namespace tarnwick {

/// What a report is made from; each outlives the task that makes it.
struct DiagnosticSources {
  DesktopController& controller;
  CommandRunner& runner;
  const ToolFinder& tools;
  std::string homeFolder;
};

/// A text for a bug report: the given facts (versions of the program and its libraries), the
/// system, each tool with its place and version, the engine, the settings, the state and the last
/// lines of the log. The password and the user's name are not in it. Asks the tools, at most three
/// seconds each (six for one that does not end when asked to). Changes nothing. Main thread.
[[nodiscard]] Task<std::string> diagnosticReport(DiagnosticSources sources, Facts facts);

}  // namespace tarnwick
