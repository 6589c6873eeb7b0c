#include "core/controller/desktop_controller.h"

#include <fmt/format.h>
#include <utility>

namespace tarnwick {

DesktopController::DesktopController(ControllerServices services)
    : services_(std::move(services)),
      keychain_(services_.secrets, services_.workers, services_.mainThread),
      settings(services_.store, keychain_, services_.loginItem, services_.random,
               services_.mainThread),
      phase(changes_, Phase::idle),
      stages(changes_, initialStages()),
      progress(changes_, std::nullopt),
      progressText(changes_, {}),
      log(changes_, {}),
      errorSummary(changes_, std::nullopt),
      notice(changes_, std::nullopt),
      showDesktop(changes_, false),
      askInstall(changes_, false),
      installing(changes_, false),
      isStopping(changes_, false),
      portConflict(changes_, std::nullopt),
      reloadToken(changes_, 0),
      docker_(services_.runner, services_.tools),
      colima_(services_.runner, services_.tools),
      ports_(services_.runner),
      starter_(services_.runner, docker_, services_.paths, services_.workers, services_.mainThread),
      tasks_(services_.mainThread) {}

// A reader may be waiting for room; it goes on, and its lines go nowhere.
DesktopController::~DesktopController() {
  if (lines_) lines_->close();
}

std::string DesktopController::statusText() const {
  if (isStopping.get()) return "Stopping…";
  switch (phase.get()) {
    case Phase::idle:
      return "Stopped";
    case Phase::busy:
      return installing.get() ? "Installing…" : "Starting…";
    case Phase::running:
      break;
  }
  return "Running (" + currentFlavor().name + ")";
}

// The address parses for every port that a TCP address can hold, 0 included.
std::optional<std::string> DesktopController::desktopURL() const {
  const std::int64_t port = settings.httpsPort.get();
  if (port < 0 || port > 65535) return std::nullopt;
  return fmt::format("https://127.0.0.1:{}/", port);
}

const Flavor& DesktopController::currentFlavor() const {
  return Flavor::resolve(settings.flavorID.get());
}

bool DesktopController::toolsInstalled() const {
  return services_.tools.find("docker") && services_.tools.find("colima");
}

void DesktopController::setStage(std::size_t index, StageState state) {
  if (index >= stages.get().size()) return;
  stages.mutate([index, state](std::vector<Stage>& rows) { rows[index].state = state; });
}

void DesktopController::fail(const std::string& message, std::optional<std::size_t> stage) {
  if (stage) setStage(*stage, StageState::failed);
  errorSummary = message;
  phase = Phase::idle;
  installing = false;
  showDesktop = false;
  progress = std::nullopt;
  progressText = std::string();
}

void DesktopController::beginRun() {
  ++turningPoints_;
  cancelRequested_ = false;
  phase = Phase::busy;
  installing = false;
  errorSummary = std::nullopt;
  notice = std::nullopt;
  log = LogText();
  progress = std::nullopt;
  progressText = std::string();
  stages = initialStages();
  showDesktop = false;
}

void DesktopController::finishCancelled() {
  phase = Phase::idle;
  installing = false;
  progress = std::nullopt;
  progressText = std::string();
  stages = initialStages();
  notice = "Cancelled.";
}

void DesktopController::settleIdle() {
  if (phase.get() == Phase::busy) return;
  phase = Phase::idle;
  showDesktop = false;
  stages = initialStages();
}

void DesktopController::appendLog(std::string_view text) {
  log.mutate([text](LogText& lines) { lines.appendLine(text); });
}

LineCallback DesktopController::lineSink() {
  return lineSink([this](std::string_view line) { appendLog(line); });
}

// The callback keeps the channel alive, not the controller: the controller closes the channel when
// it goes.
LineCallback DesktopController::lineSink(LineChannel::Consumer consume) {
  if (lines_) lines_->close();
  lines_ = std::make_shared<LineChannel>(services_.mainThread, std::move(consume));
  return [channel = lines_](std::string_view line) { channel->push(line); };
}

std::shared_ptr<StreamingProcess> DesktopController::newStream() {
  stream_ = services_.makeStream();
  return stream_;
}

CancellationToken DesktopController::newRun() {
  run_ = CancellationSource();
  return run_.token();
}

bool DesktopController::finishedByCancel() {
  if (!cancelRequested_) return false;
  finishCancelled();
  return true;
}

void DesktopController::dismissInstallOffer() {
  askInstall = false;
}

void DesktopController::dismissPortConflict() {
  portConflict = std::nullopt;
}

void DesktopController::useSuggestedPorts() {
  if (!portConflict.get()) return;
  const PortConflict conflict = *portConflict.get();
  settings.httpPort = conflict.suggestedHTTP;
  settings.httpsPort = conflict.suggestedHTTPS;
  portConflict = std::nullopt;
  startLaunch(false, false);
}

void DesktopController::showHome() {
  showDesktop = false;
}

void DesktopController::reloadDesktop() {
  reloadToken = reloadToken.get() + 1;
}

void DesktopController::report(const std::string& information) {
  notice = information;
}

}  // namespace tarnwick
