#pragma once

#include "app/wish.h"
#include "core/async/main_thread.h"
#include "core/async/task.h"
#include "core/controller/desktop_controller.h"
#include "core/process/command_runner.h"
#include "core/process/tool_finder.h"

namespace tarnwick {

/// Ends the desktop, or the start that is under way and whatever that has started, and looks
/// whether it has ended: docker's word counts, not only the controller's. Starts nothing. What is
/// referred to outlives the task. Main thread.
Task<Answer> stopDesktop(DesktopController& controller, CommandRunner& runner,
                         const ToolFinder& tools, MainThread& mainThread);

/// Ends when the controller's monitor has looked once. Main thread.
Task<void> firstLook(const DesktopController& controller, MainThread& mainThread);

}  // namespace tarnwick
