#pragma once

#include <functional>
#include <optional>

#include "platform/qt/tray_host_watch.h"
#include "platform/qt/x11_tray_watch.h"

namespace tarnwick {

/// Tells whether anybody shows tray items, in either of the two ways that desktops have. Needs a
/// QGuiApplication; interface thread.
class TrayHosts {
 public:
  /// `changed` is called from the event loop when it is known, and whenever that changes.
  explicit TrayHosts(std::function<void(bool there)> changed);

 private:
  void tell();

  std::function<void(bool)> changed_;
  bool onBus_ = false;
  std::optional<bool> told_;
  std::optional<X11TrayWatch> x11_;
  TrayHostWatch bus_;
};

}  // namespace tarnwick
