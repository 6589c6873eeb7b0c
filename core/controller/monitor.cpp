#include <algorithm>
#include <fmt/format.h>
#include <utility>

#include "core/async/sleep.h"
#include "core/controller/desktop_controller.h"

namespace tarnwick {

using namespace std::chrono_literals;

// The plain port: no certificate is involved, and a request for sign-in is an answer too.
Task<bool> DesktopController::probe(std::int64_t port) {
  if (port < 0 || port > 65535) co_return false;
  std::function<std::optional<int>()> ask = [&client = services_.httpProbe,
                                             url = fmt::format("http://127.0.0.1:{}/", port)] {
    return client.status(url, 2s);
  };
  const std::uint64_t asked = turningPoints_;
  const std::optional<int> status = co_await onWorker<std::optional<int>>(
      services_.workers, services_.mainThread, std::move(ask));
  // It may have been the page of a container that was ended meanwhile.
  if (asked != turningPoints_) co_return false;
  co_return status&&* status < 500;
}

void DesktopController::startMonitor() {
  if (std::exchange(monitoring_, true)) return;
  tasks_.start(monitorLoop());
}

Task<void> DesktopController::monitorLoop() {
  while (true) {
    co_await pollOnce();
    looked_ = true;
    CancellationToken never;
    co_await sleepFor(services_.mainThread, 6s, std::move(never));
  }
}

Task<void> DesktopController::pollOnce() {
  if (phase.get() == Phase::busy || isStopping.get()) co_return;
  if (!services_.tools.find("docker")) co_return;
  const std::uint64_t asked = turningPoints_;
  const std::optional<ContainerInfo> info = co_await docker_.containerInfo();
  // A launch, an install or a stop may have begun meanwhile; it owns the state. One that is over
  // already has seen more than this answer.
  if (phase.get() == Phase::busy || isStopping.get() || asked != turningPoints_) co_return;
  if (!info || !info->running) {
    if (phase.get() == Phase::running) settleIdle();
    co_return;
  }
  if (phase.get() != Phase::idle) co_return;
  adopt(*info);
  const bool up = co_await probe(settings.httpPort);
  if (up && phase.get() == Phase::idle && !isStopping.get()) phase = Phase::running;
}

void DesktopController::adopt(const ContainerInfo& info) {
  const auto& flavors = Flavor::all();
  const auto match = std::find_if(flavors.begin(), flavors.end(), [&](const Flavor& flavor) {
    return imageReference(services_.imageRegistry, flavor) == info.image;
  });
  if (match != flavors.end()) settings.flavorID = match->id;
}

}  // namespace tarnwick
