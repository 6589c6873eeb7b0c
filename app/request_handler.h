#pragma once

#include <functional>
#include <string>

#include "app/wish.h"
#include "core/async/main_thread.h"
#include "core/async/task_scope.h"
#include "core/controller/desktop_controller.h"
#include "core/process/command_runner.h"
#include "core/process/tool_finder.h"

namespace tarnwick {

/// Fulfils the wishes of the program's starts, the first one's and those of later ones. What it is
/// given outlives it. Main thread.
class RequestHandler {
 public:
  /// Opens the window with this id, or brings it to the front with the help of the token.
  using OpenWindow = std::function<void(const char* id, const std::string& activationToken)>;

  RequestHandler(DesktopController& controller, CommandRunner& runner, const ToolFinder& tools,
                 MainThread& mainThread, OpenWindow openWindow);

  /// `reply` is called once, perhaps much later.
  void handle(const Request& request, std::function<void(const Answer&)> reply);

 private:
  Task<void> pressWhenReady(unsigned wish);
  Task<void> answerStatus(Wish wish, std::function<void(const Answer&)> reply);
  Task<void> answerStop(std::function<void(const Answer&)> reply);

  DesktopController& controller_;
  CommandRunner& runner_;
  const ToolFinder& tools_;
  MainThread& mainThread_;
  OpenWindow openWindow_;
  unsigned launchWish_ = 0;  ///< the last one's number; a stop makes it void
  TaskScope tasks_;
};

}  // namespace tarnwick
