#pragma once

#include <QMainWindow>
#include <QPointer>
#include <QStackedWidget>

#include "core/controller/desktop_controller.h"
#include "ui/common/announcer.h"
#include "ui/common/render_scheduler.h"
#include "ui/common/window_opener.h"
#include "ui/desktop/desktop_screen.h"
#include "ui/home/home_screen.h"
#include "ui/main_window/announcements.h"
#include "ui/main_window/main_menu.h"

namespace tarnwick {

/// The window "main": the desktop while there is one to show, the home screen in every other case.
/// Closing it hides it; the application goes on.
class MainWindow final : public QMainWindow {
 public:
  MainWindow(DesktopController& controller, WindowOpener& windows, WebDesktopServices& services,
             WebModuleSource webModule, std::function<void()> copyDiagnostics);
  ~MainWindow() override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void render();
  void enterDesktop();
  void leaveDesktop();

  DesktopController& controller_;
  WindowOpener& windows_;
  WebDesktopServices& services_;
  WebModuleSource webModule_;
  QStackedWidget* content_;
  HomeScreen* home_;
  QPointer<DesktopScreen> desktop_;
  MainMenu* menu_;
  Announcer* announcer_;
  Announcements announcements_;
  RenderScheduler scheduler_;
};

}  // namespace tarnwick
