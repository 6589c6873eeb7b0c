#pragma once

#include <QAction>
#include <QMainWindow>
#include <functional>

#include "core/controller/desktop_controller.h"
#include "ui/common/window_opener.h"

namespace tarnwick {

/// Who the keyboard belongs to.
enum class Keyboard {
  ours,
  desktops,  ///< all keys but full screen's go to the Linux desktop
};

/// The main window's menu: everything that the tray offers, and the other windows.
class MainMenu final : public QObject {
 public:
  MainMenu(QMainWindow& window, DesktopController& controller, WindowOpener& windows,
           std::function<void()> copyDiagnostics);
  void render(Keyboard keyboard);

 private:
  QAction* add(QMenu& menu, const QString& title, const QKeySequence& keys,
               std::function<void()> run);

  QMainWindow& window_;
  DesktopController& controller_;
  QAction* stop_;
};

}  // namespace tarnwick
