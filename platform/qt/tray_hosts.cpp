#include "platform/qt/tray_hosts.h"

#include <utility>

namespace tarnwick {

TrayHosts::TrayHosts(std::function<void(bool)> changed)
    : changed_(std::move(changed)), bus_([this](bool there) {
        onBus_ = there;
        // Whoever makes an item has the toolkit ask the bus first, and wait for the answer: the old
        // way is looked at only after the bus has proved to answer.
        if (!x11_) x11_.emplace([this] { tell(); });
        tell();
      }) {}

void TrayHosts::tell() {
  const bool there = onBus_ || x11_->isThere();
  if (std::exchange(told_, there) != there) changed_(there);
}

}  // namespace tarnwick
