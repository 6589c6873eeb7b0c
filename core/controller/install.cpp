#include <utility>

#include "core/controller/desktop_controller.h"

namespace tarnwick {

void DesktopController::confirmInstall() {
  if (phase.get() == Phase::busy) return;
  beginRun();
  installing = true;
  tasks_.start(runInstallThenLaunch(newRun()));
}

Task<void> DesktopController::runInstallThenLaunch(CancellationToken cancellation) {
  // Between the press and this first turn, perhaps: there was no stream to cancel yet.
  if (finishedByCancel()) co_return;
  progress = std::nullopt;
  progressText = "Installing with Homebrew (brew install colima docker)…";
  const auto stream = newStream();
  LineCallback sink = lineSink();
  const std::int32_t status = co_await colima_.install(stream, std::move(sink));
  if (finishedByCancel()) co_return;
  if (status != 0 || !toolsInstalled()) {
    fail("The installation did not finish. Open Show details to see what Homebrew said.",
         std::nullopt);
    co_return;
  }
  // The launch is part of the same run: Homebrew's lines stay at the top of the log.
  installing = false;
  co_await runLaunch(false, false, cancellation);
}

}  // namespace tarnwick
