#pragma once

#include <QTimer>
#include <chrono>
#include <functional>
#include <optional>

#include "core/controller/desktop_controller.h"
#include "ui/common/window_opener.h"
#include "ui/tray/tray_item.h"

namespace tarnwick {

/// The tray item for as long as somebody shows it, and the way back where nobody does: then the
/// main window opens unless a window is there. Interface thread; everything it is given outlives
/// it.
class Tray {
 public:
  /// `hasWindow` tells whether a window of ours is on show. A panel that starts with the session,
  /// or is started again, has `patience` to come up.
  Tray(DesktopController& controller, WindowOpener& windows, std::function<bool()> hasWindow,
       std::chrono::milliseconds patience = std::chrono::seconds(5));

  /// Somebody who shows tray items has come or gone. At first there is nobody.
  void hostChanged(bool there);

  /// None as long as nobody has ever shown it.
  [[nodiscard]] const std::optional<TrayItem>& item() const { return item_; }

 private:
  DesktopController& controller_;
  WindowOpener& windows_;
  std::function<bool()> hasWindow_;
  std::optional<TrayItem> item_;
  QTimer patience_;
};

/// Whether a window of this program is on show: no menu, no tool tip.
[[nodiscard]] bool hasWindowOnShow();

}  // namespace tarnwick
