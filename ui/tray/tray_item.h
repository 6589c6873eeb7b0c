#pragma once

#include <QMenu>
#include <QSystemTrayIcon>
#include <optional>

#include "core/controller/desktop_controller.h"
#include "ui/common/render_scheduler.h"
#include "ui/common/window_opener.h"

namespace tarnwick {

/// The application's item in the desktop's tray: an icon that tells the phase, and a menu. Where
/// the desktop has no tray it does no harm. The controller and the opener outlive it.
class TrayItem final {
 public:
  TrayItem(DesktopController& controller, WindowOpener& windows);

  void show() { icon_.show(); }
  [[nodiscard]] QMenu& menu() { return menu_; }
  [[nodiscard]] const QSystemTrayIcon& icon() const { return icon_; }

 private:
  void fillMenu();
  void render();
  void openDesktop();

  DesktopController& controller_;
  WindowOpener& windows_;
  QMenu menu_;
  QAction* status_;
  QAction* stop_;
  QSystemTrayIcon icon_;
  std::optional<Phase> shownPhase_;
  RenderScheduler scheduler_;
};

}  // namespace tarnwick
