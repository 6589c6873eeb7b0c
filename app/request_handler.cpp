#include "app/request_handler.h"

#include <chrono>
#include <utility>

#include "app/desktop_status.h"
#include "app/stop_desktop.h"
#include "core/async/sleep.h"
#include "ui/common/window_opener.h"

namespace tarnwick {

using namespace std::chrono_literals;

RequestHandler::RequestHandler(DesktopController& controller, CommandRunner& runner,
                               const ToolFinder& tools, MainThread& mainThread,
                               OpenWindow openWindow)
    : controller_(controller),
      runner_(runner),
      tools_(tools),
      mainThread_(mainThread),
      openWindow_(std::move(openWindow)),
      tasks_(mainThread) {}

void RequestHandler::handle(const Request& request, std::function<void(const Answer&)> reply) {
  switch (request.wish) {
    case Wish::status:
    case Wish::statusJson:
      tasks_.start(answerStatus(request.wish, std::move(reply)));
      return;
    case Wish::stop:
      ++launchWish_;
      tasks_.start(answerStop(std::move(reply)));
      return;
    case Wish::settings:
      openWindow_(settingsWindowId, request.activationToken);
      break;
    case Wish::logs:
      openWindow_(logsWindowId, request.activationToken);
      break;
    case Wish::launch:
      openWindow_(mainWindowId, request.activationToken);
      tasks_.start(pressWhenReady(++launchWish_));
      break;
    case Wish::open:
      openWindow_(mainWindowId, request.activationToken);
      break;
    case Wish::background:
      break;
  }
  reply(Answer());
}

// As a user would, who sees first whether a desktop runs, and for whom the button is out of reach
// during a stop.
Task<void> RequestHandler::pressWhenReady(unsigned wish) {
  co_await firstLook(controller_, mainThread_);
  while (controller_.isStopping.get()) {
    CancellationToken never;
    co_await sleepFor(mainThread_, 50ms, std::move(never));
  }
  if (wish == launchWish_) controller_.primary();
}

Task<void> RequestHandler::answerStatus(Wish wish, std::function<void(const Answer&)> reply) {
  co_await firstLook(controller_, mainThread_);
  reply(statusAnswer(statusOf(controller_), wish));
}

Task<void> RequestHandler::answerStop(std::function<void(const Answer&)> reply) {
  const Answer answer = co_await stopDesktop(controller_, runner_, tools_, mainThread_);
  reply(answer);
}

}  // namespace tarnwick
