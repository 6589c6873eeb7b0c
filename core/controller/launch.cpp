#include <fmt/format.h>
#include <utility>

#include "core/async/sleep.h"
#include "core/controller/desktop_controller.h"
#include "core/controller/friendly.h"
#include "core/controller/homebrew.h"
#include "core/settings/password.h"

namespace tarnwick {

void DesktopController::primary() {
  switch (phase.get()) {
    case Phase::busy:
      return;
    case Phase::running:
      showDesktop = true;
      return;
    case Phase::idle:
      break;
  }
  if (toolsInstalled()) {
    startLaunch(false, false);
  } else if (services_.tools.find("brew")) {
    askInstall = true;
  } else {
    services_.workspace.openUrl(std::string("https://") + homebrewHost + "/");
    notice = fmt::format(
        "Homebrew is needed to install Colima and Docker. The page {} is open in your browser; "
        "this app never installs Homebrew itself.",
        homebrewHost);
  }
}

void DesktopController::startLaunch(bool forcePull, bool recreate) {
  if (phase.get() == Phase::busy) return;
  beginRun();
  tasks_.start(runLaunch(forcePull, recreate, newRun()));
}

Task<void> DesktopController::runLaunch(bool forcePull, bool recreate,
                                        CancellationToken cancellation) {
  // Between the press and this first turn, perhaps.
  if (finishedByCancel()) co_return;
  const std::optional<std::string> docker = services_.tools.find("docker");
  if (!docker || !services_.tools.find("colima")) {
    fail("Docker or Colima is not installed.", std::nullopt);
    co_return;
  }
  // Kept for the whole run, also when the setting changes meanwhile.
  const Flavor flavor = currentFlavor();
  const std::string image = imageReference(services_.imageRegistry, flavor);

  const bool colimaReady = co_await makeColimaReady();
  if (!colimaReady) co_return;
  const bool imagePresent = co_await makeImagePresent(*docker, image, forcePull);
  if (!imagePresent) co_return;

  progress = std::nullopt;
  setStage(1, StageState::done);
  setStage(2, StageState::active);
  progressText = "Creating the desktop container…";
  const bool portsFree = co_await checkPorts();
  if (!portsFree) co_return;
  const bool created = co_await createContainer(*docker, flavor, recreate);
  if (!created) co_return;
  co_await waitForDesktop(flavor, cancellation);
}

Task<bool> DesktopController::makeColimaReady() {
  setStage(0, StageState::active);
  progress = std::nullopt;
  progressText = "Checking Colima…";
  const bool reachable = co_await colima_.dockerReachable();
  if (!reachable) {
    const bool started = co_await startColima();
    if (!started) co_return false;
  }
  setStage(0, StageState::done);
  co_return true;
}

Task<bool> DesktopController::startColima() {
  progressText = "Starting Colima (the first start sets up a small Linux VM)…";
  const auto stream = newStream();
  std::int32_t status = StreamingProcess::couldNotStart;
  const std::optional<std::string> colima = services_.tools.find("colima");
  if (colima) {
    const std::vector<std::string> args = colimaStartArguments();
    const Environment env;
    LineCallback sink = lineSink();
    const std::int32_t ended = co_await stream->run(*colima, args, env, std::move(sink));
    status = ended;
  }
  if (finishedByCancel()) co_return false;
  const bool reachable = co_await colima_.dockerReachable();
  if (status != 0 || !reachable) {
    fail(friendly(log->text(), "Colima could not start."), 0);
    co_return false;
  }
  co_return true;
}

std::vector<std::string> DesktopController::colimaStartArguments() const {
  std::vector<std::string> args{"start",
                                "--cpu",
                                fmt::to_string(settings.cpu.get()),
                                "--memory",
                                fmt::to_string(settings.memory.get()),
                                "--disk",
                                fmt::to_string(settings.disk.get())};
  if (const auto folder = settings.validSharePath()) {
    args.insert(args.end(), {"--mount", *folder + ":w"});
  }
  return args;
}

Task<bool> DesktopController::makeImagePresent(std::string docker, std::string image,
                                               bool forcePull) {
  setStage(1, StageState::active);
  const bool exists = co_await docker_.imageExists(image);
  if (finishedByCancel()) co_return false;
  if (exists && !forcePull) co_return true;
  co_return co_await pullImage(docker, image);
}

Task<bool> DesktopController::pullImage(std::string docker, std::string image) {
  pull_ = PullProgress();
  progress = std::nullopt;
  progressText = "Downloading " + image + "…";
  const auto stream = newStream();
  LineCallback sink = lineSink([this](std::string_view line) {
    appendLog(line);
    pull_.ingest(line);
    progress = pull_.fraction();
    progressText = pull_.summary();
  });
  const std::vector<std::string> args{"pull", image};
  const Environment env;
  downloading_ = true;
  const std::int32_t status = co_await stream->run(docker, args, env, std::move(sink));
  downloading_ = false;
  if (finishedByCancel()) co_return false;
  if (status != 0) {
    fail(friendly(log->text(), "The image could not be downloaded."), 1);
    co_return false;
  }
  co_return true;
}

Task<bool> DesktopController::checkPorts() {
  const std::optional<ContainerInfo> info = co_await docker_.containerInfo();
  // The ports of a running desktop are held by its own container.
  if (info && info->running) co_return true;

  std::optional<std::int64_t> taken;
  if (!portIsFree(settings.httpPort)) {
    taken = settings.httpPort;
  } else if (!portIsFree(settings.httpsPort)) {
    taken = settings.httpsPort;
  }
  if (!taken) co_return true;

  std::string holder = co_await ports_.holder(*taken);
  const auto [http, https] = PortCheck::freePair(3100);
  portConflict = PortConflict{randomUuidDigits(), *taken, std::move(holder), http, https};
  phase = Phase::idle;
  stages = initialStages();
  progressText = std::string();
  co_return false;
}

Task<bool> DesktopController::createContainer(std::string docker, Flavor flavor, bool recreate) {
  // Unlocked since, perhaps: a desktop without its password is worse than a moment more.
  settings.retryKeychain();
  co_await settings.passwordLoaded();
  const std::optional<std::string> password = settings.activePassword();
  LaunchConfig config;
  config.flavor = std::move(flavor);
  config.httpPort = settings.httpPort;
  config.httpsPort = settings.httpsPort;
  config.timezone = services_.workspace.timeZone();
  config.passwordProtected = password.has_value();
  config.sharePath = settings.validSharePath();
  config.registryHost = services_.imageRegistry;
  // The only way of the password to docker: neither the compose file nor an argument holds it.
  Environment env;
  if (password) {
    env["CUSTOM_USER"] = "linux";
    env["PASSWORD"] = *password;
  }
  const std::optional<std::string> error =
      co_await starter_.startContainer(docker, std::move(config), std::move(env), recreate);
  if (finishedByCancel()) co_return false;
  if (error) {
    fail(friendly(*error, "The desktop container could not start."), 2);
    appendLog(*error);
    co_return false;
  }
  co_return true;
}

Task<void> DesktopController::waitForDesktop(Flavor flavor, CancellationToken cancellation) {
  progressText = "Waiting for the desktop to answer (the first start can take a minute)…";
  const TimePoint deadline = services_.mainThread.now() + std::chrono::seconds(240);
  bool ready = false;
  for (int attempts = 1; services_.mainThread.now() < deadline && !cancelRequested_; ++attempts) {
    const bool answers = co_await probe(settings.httpPort);
    if (answers) {
      ready = true;
      break;
    }
    if (attempts % 5 == 0) {
      const std::optional<ContainerInfo> info = co_await docker_.containerInfo();
      // A dead container will not answer any more.
      if (!info || !info->running) break;
    }
    co_await sleepFor(services_.mainThread, std::chrono::seconds(2), cancellation);
  }
  if (finishedByCancel()) co_return;
  if (ready) {
    finishLaunch(flavor);
    co_return;
  }
  const std::string logs = co_await docker_.logs(40);
  appendLog(logs);
  fail("The desktop did not answer in time. Open Show details, or the Logs window, to see why.", 2);
}

void DesktopController::finishLaunch(const Flavor& flavor) {
  setStage(2, StageState::done);
  setStage(3, StageState::done);
  progressText = std::string();
  settings.markLaunched(flavor.id);
  phase = Phase::running;
  // A desktop that the view cannot open would be an empty window without a word.
  const std::int64_t port = settings.httpsPort;
  if (!webViewOpensPort(port)) {
    notice = fmt::format(
        "The desktop runs, but the built-in view cannot open port {}. Choose another HTTPS port in "
        "Settings and apply the settings.",
        port);
    return;
  }
  showDesktop = true;
  notice = std::nullopt;
}

}  // namespace tarnwick
