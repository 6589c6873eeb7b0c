#include "ui/tray/tray_item.h"

#include <QCoreApplication>

#include "ui/tray/status_icon.h"

namespace tarnwick {

TrayItem::TrayItem(DesktopController& controller, WindowOpener& windows)
    : controller_(controller), windows_(windows), scheduler_([this] { render(); }) {
  fillMenu();
  icon_.setContextMenu(&menu_);
  QObject::connect(&icon_, &QSystemTrayIcon::activated, &icon_,
                   [this](QSystemTrayIcon::ActivationReason reason) {
                     // A plain click shows the window; only the menu's item starts anything.
                     if (reason == QSystemTrayIcon::Trigger) windows_.openWindow(mainWindowId);
                   });
  render();
  scheduler_.observe(controller_.changes());
  scheduler_.observe(controller_.settings.changes());
}

void TrayItem::fillMenu() {
  status_ = menu_.addAction(QString());
  status_->setEnabled(false);
  menu_.addSeparator();
  const QAction* open = menu_.addAction(QStringLiteral("Open desktop"));
  stop_ = menu_.addAction(QStringLiteral("Stop"));
  menu_.addSeparator();
  const QAction* quit = menu_.addAction(QStringLiteral("Quit"));
  QObject::connect(open, &QAction::triggered, &menu_, [this] { openDesktop(); });
  QObject::connect(stop_, &QAction::triggered, &menu_, [this] { controller_.stop(); });
  QObject::connect(quit, &QAction::triggered, qApp, &QCoreApplication::quit);
}

void TrayItem::openDesktop() {
  windows_.openWindow(mainWindowId);
  controller_.primary();
}

void TrayItem::render() {
  const Phase phase = controller_.phase.get();
  const QString status =
      QStringLiteral("Tarnwick: ") + QString::fromStdString(controller_.statusText());
  status_->setText(status);
  stop_->setEnabled(phase != Phase::idle);
  icon_.setToolTip(status);
  // A tray redraws on every assignment.
  if (phase == shownPhase_) return;
  shownPhase_ = phase;
  icon_.setIcon(StatusIcon::icon(phase));
}

}  // namespace tarnwick
