#include "ui/main_window/main_menu.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <utility>

#include "ui/desktop/full_screen.h"

namespace tarnwick {

MainMenu::MainMenu(QMainWindow& window, DesktopController& controller, WindowOpener& windows,
                   std::function<void()> copyDiagnostics)
    : QObject(&window), window_(window), controller_(controller) {
  QMenu& menu = *window.menuBar()->addMenu(QStringLiteral("&Tarnwick"));
  window.menuBar()->setAccessibleName(QStringLiteral("Menu bar"));
  menu.setAccessibleName(QStringLiteral("Tarnwick"));
  add(menu, QStringLiteral("&Open desktop"), {}, [this] { controller_.primary(); });
  stop_ = add(menu, QStringLiteral("&Stop"), {}, [this] { controller_.stop(); });
  menu.addSeparator();
  add(menu, QStringLiteral("S&ettings"), QKeySequence(Qt::CTRL | Qt::Key_Comma),
      [&windows] { windows.openWindow(settingsWindowId); });
  add(menu, QStringLiteral("&Logs"), QKeySequence(Qt::CTRL | Qt::Key_L),
      [&windows] { windows.openWindow(logsWindowId); });
  QAction* fullScreen = add(menu, QStringLiteral("&Full screen"), QKeySequence(Qt::Key_F11),
                            [&window] { toggleFullScreen(&window); });
  // Also known to the window itself, whose menu bar is not always there.
  window.addAction(fullScreen);
  menu.addSeparator();
  add(menu, QStringLiteral("&Quit"), QKeySequence(Qt::CTRL | Qt::Key_Q),
      [] { QApplication::quit(); });
  QMenu& help = *window.menuBar()->addMenu(QStringLiteral("&Help"));
  help.setAccessibleName(QStringLiteral("Help"));
  add(help, QStringLiteral("&Copy diagnostics"), {}, std::move(copyDiagnostics));
}

QAction* MainMenu::add(QMenu& menu, const QString& title, const QKeySequence& keys,
                       std::function<void()> run) {
  QAction* action = menu.addAction(title);
  action->setShortcut(keys);
  // Not moved to other menus by their titles.
  action->setMenuRole(QAction::NoRole);
  QObject::connect(action, &QAction::triggered, this, std::move(run));
  return action;
}

void MainMenu::render(Keyboard keyboard) {
  stop_->setEnabled(controller_.phase.get() != Phase::idle);
  // A hidden menu bar takes neither its shortcuts nor the Alt key.
  window_.menuBar()->setVisible(keyboard == Keyboard::ours);
}

}  // namespace tarnwick
