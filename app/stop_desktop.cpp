#include "app/stop_desktop.h"

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/async/sleep.h"
#include "core/engine/docker.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

enum class Container { runs, doesNotRun, unknown };

Task<Container> lookAtContainer(CommandRunner& runner, std::string docker) {
  constexpr double answerLimit = 10;
  const std::vector<std::string> args{"inspect", "-f", "{{.State.Running}}|{{.Config.Image}}",
                                      containerName};
  const Environment env;
  const CommandResult result = co_await runner.run(docker, args, answerLimit, env);
  if (result.timedOut) co_return Container::unknown;
  const auto info = result.succeeded() ? parseContainerInfo(result.out) : std::nullopt;
  co_return info && info->running ? Container::runs : Container::doesNotRun;
}

Task<void> waitUntilCalm(DesktopController& controller, MainThread& mainThread) {
  while (controller.phase.get() == Phase::busy || controller.isStopping.get()) {
    CancellationToken never;
    co_await sleepFor(mainThread, 100ms, std::move(never));
  }
}

/// What the user is told when no container runs any more.
std::string outcome(bool wasStopping, bool wasBusy, bool wasInstalling) {
  if (wasInstalling) return "The installation was cancelled.";
  if (wasBusy) return "The start was cancelled.";
  return wasStopping ? "The desktop was stopped." : "The desktop is not running.";
}

}  // namespace

Task<Answer> stopDesktop(DesktopController& controller, CommandRunner& runner,
                         const ToolFinder& tools, MainThread& mainThread) {
  const std::string noAnswer = "Docker does not answer; whether the desktop runs is not known.";
  std::string done = outcome(controller.isStopping.get(), controller.phase.get() == Phase::busy,
                             controller.installing.get());
  if (controller.phase.get() == Phase::busy) controller.cancel();
  co_await waitUntilCalm(controller, mainThread);

  const std::optional<std::string> docker = tools.find("docker");
  if (!docker) co_return Answer(ExitCode::done, std::move(done));
  const Container before = co_await lookAtContainer(runner, *docker);
  if (before == Container::unknown) co_return Answer(ExitCode::failed, noAnswer);
  if (before == Container::doesNotRun) co_return Answer(ExitCode::done, std::move(done));

  controller.stop();
  co_await waitUntilCalm(controller, mainThread);
  const Container after = co_await lookAtContainer(runner, *docker);
  if (after == Container::unknown) co_return Answer(ExitCode::failed, noAnswer);
  if (after == Container::runs) {
    co_return Answer(ExitCode::failed, "The desktop could not be stopped; it still runs.");
  }
  co_return Answer(ExitCode::done, "The desktop was stopped.");
}

Task<void> firstLook(const DesktopController& controller, MainThread& mainThread) {
  while (!controller.hasLooked()) {
    CancellationToken never;
    co_await sleepFor(mainThread, 50ms, std::move(never));
  }
}

}  // namespace tarnwick
