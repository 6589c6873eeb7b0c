#include "app/application.h"

#include <QStandardPaths>
#include <QSystemTrayIcon>

#include "app/quit_hook.h"
#include "ui/logs_window/logs_window.h"
#include "ui/main_window/main_window.h"
#include "ui/settings_window/settings_window.h"

namespace tarnwick {
namespace {

QString below(const QString& folder, const char* name) {
  return folder + QLatin1Char('/') + QLatin1String(name);
}

}  // namespace

Application::Application(Backend& backend)
    : backend_(backend),
      desktopServices_(backend.controller().settings, backend.workspace(),
                       below(QString::fromStdString(backend.paths().supportDir()), "web"),
                       below(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation),
                             "tarnwick/web")),
      phaseWatch_([this] { watchPhase(); }) {
  phaseWatch_.observe(backend_.controller().changes());
  addWindows();
}

void Application::addWindows() {
  windows_.add(mainWindowId, [this] {
    return new MainWindow(backend_.controller(), windows_, desktopServices_, [this] {
      WebModule web;
      web.module = web_.module();
      web.error = web_.error();
      return web;
    });
  });
  windows_.add(settingsWindowId, [this] {
    return new SettingsWindow({backend_.controller(), backend_.mainThread(), dialogs_,
                               backend_.workspace(), backend_.paths()});
  });
  windows_.add(logsWindowId, [this] {
    return new LogsWindow({backend_.docker(), backend_.mainThread(), backend_.workers(), dialogs_});
  });
}

void Application::showTrayItem() {
  tray_.emplace(backend_.controller(), windows_);
  tray_->show();
}

bool Application::isInTray() {
  return QSystemTrayIcon::isSystemTrayAvailable();
}

void Application::finish() {
  tray_.reset();
  windows_.closeAll();
  stopColimaIfWanted(backend_.store(), backend_.tools(), backend_.cli());
}

void Application::watchPhase() {
  const bool busy = backend_.controller().phase.get() == Phase::busy;
  // A run may make a new container, with a new certificate.
  if (busy && !wasBusy_) web_.forgetCertificate();
  wasBusy_ = busy;
}

}  // namespace tarnwick
