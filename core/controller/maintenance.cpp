#include <utility>

#include "core/controller/desktop_controller.h"
#include "core/controller/friendly.h"

namespace tarnwick {

void DesktopController::stop() {
  if (phase.get() == Phase::busy) {
    cancel();
    return;
  }
  // A stop that is under way already does what is asked.
  if (isStopping.get() || !services_.tools.find("docker")) return;
  isStopping = true;
  showDesktop = false;
  tasks_.start(stopDesktop());
}

Task<void> DesktopController::stopDesktop() {
  co_await stopContainer(services_.tools.find("docker").value_or(std::string()));
  isStopping = false;
  settleIdle();
}

// A container that did not stop is found again by the monitor.
Task<void> DesktopController::stopContainer(std::string docker) {
  if (docker.empty()) co_return;
  const std::vector<std::string> args{"stop", containerName};
  const Environment env;
  const CommandResult ignored = co_await services_.runner.run(docker, args, 60, env);
  ++turningPoints_;
}

void DesktopController::cancel() {
  cancelRequested_ = true;
  if (stream_) stream_->cancel();
  run_.cancel();
}

void DesktopController::update() {
  if (!toolsInstalled()) {
    notice = "Docker and Colima are not installed yet.";
    return;
  }
  showDesktop = false;
  startLaunch(true, true);
}

void DesktopController::applySettings() {
  if (!toolsInstalled()) return;
  showDesktop = false;
  startLaunch(false, true);
}

void DesktopController::restartColima() {
  if (!toolsInstalled() || phase.get() == Phase::busy || isStopping.get()) return;
  isStopping = true;
  showDesktop = false;
  tasks_.start(stopColima());
}

Task<void> DesktopController::stopColima() {
  co_await stopContainer(services_.tools.find("docker").value_or(std::string()));
  const CommandResult result = co_await colima_.stop();
  ++turningPoints_;
  isStopping = false;
  settleIdle();
  notice =
      result.succeeded()
          ? "Colima was stopped. Press the main button to start it again with the new settings."
          : "Could not stop Colima: " + result.combined();
}

void DesktopController::setColimaAtLogin(bool on) {
  settings.colimaAtLogin = on;
  tasks_.start(changeColimaAtLogin(on));
}

Task<void> DesktopController::changeColimaAtLogin(bool on) {
  const CommandResult result = co_await colima_.setStartAtLogin(on);
  if (result.succeeded()) co_return;
  settings.colimaAtLogin = !on;
  notice = "brew services could not change Colima's login item: " + result.combined();
}

void DesktopController::removeFlavor(Flavor flavor) {
  tasks_.start(removeFlavorData(std::move(flavor)));
}

Task<void> DesktopController::removeFlavorData(Flavor flavor) {
  const std::optional<std::string> docker = services_.tools.find("docker");
  if (!docker) co_return;
  const Environment env;
  const std::optional<ContainerInfo> info = co_await docker_.containerInfo();
  if (info && info->image == imageReference(services_.imageRegistry, flavor)) {
    const std::vector<std::string> removal{"rm", "-f", containerName};
    const CommandResult ignored = co_await services_.runner.run(*docker, removal, 60, env);
    ++turningPoints_;
    settleIdle();
  }
  const std::string volume = flavor.volumeName();
  const std::vector<std::string> args{"volume", "rm", volume};
  const CommandResult result = co_await services_.runner.run(*docker, args, 30, env);
  if (result.succeeded()) {
    settings.forgetLaunched(flavor.id);
    notice =
        "Removed the container (if it used " + flavor.name + ") and the volume " + volume + ".";
  } else if (lowerCased(result.combined()).find("no such volume") != std::string::npos) {
    settings.forgetLaunched(flavor.id);
    notice = "There was no saved data for " + flavor.name + ".";
  } else {
    errorSummary = "The volume could not be removed. Stop the desktop first, then try again.";
    appendLog(result.combined());
  }
}

}  // namespace tarnwick
