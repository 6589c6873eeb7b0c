#include "app/application.h"

#include <QStandardPaths>

#include "app/activation.h"
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
      diagnostics_(backend, [this] { return webFacts(); }),
      phaseWatch_([this] { watchPhase(); }) {
  phaseWatch_.observe(backend_.controller().changes());
  addWindows();
}

void Application::addWindows() {
  windows_.add(mainWindowId, [this] {
    const auto webModule = [this] {
      WebModule web;
      web.module = web_.module();
      web.error = web_.error();
      return web;
    };
    return new MainWindow(backend_.controller(), windows_, desktopServices_, webModule,
                          [this] { diagnostics_.copy(); });
  });
  windows_.add(settingsWindowId, [this] {
    return new SettingsWindow({backend_.controller(), backend_.mainThread(), dialogs_,
                               backend_.workspace(), backend_.paths()});
  });
  windows_.add(logsWindowId, [this] {
    return new LogsWindow({backend_.docker(), backend_.mainThread(), backend_.workers(), dialogs_});
  });
}

void Application::openWindow(const std::string& id, const std::string& activationToken) {
  useActivationToken(activationToken);
  windows_.openWindow(id);
  if (const QWidget* window = windows_.find(id)) finishActivation(activationToken, *window);
}

void Application::joinDesktop() {
  session_.emplace(backend_, windows_, [this](const std::string& activationToken) {
    openWindow(mainWindowId, activationToken);
  });
}

void Application::finish() {
  if (session_) session_->leave();
  windows_.closeAll();
  stopColimaIfWanted(backend_.store(), backend_.tools(), backend_.cli());
}

Facts Application::webFacts() const {
  const QString version = web_.engineVersion();
  return {{"Web engine", version.isEmpty() ? "not loaded" : version.toStdString()}};
}

void Application::watchPhase() {
  const bool busy = backend_.controller().phase.get() == Phase::busy;
  // A run may make a new container, with a new certificate.
  if (busy && !wasBusy_) web_.forgetCertificate();
  wasBusy_ = busy;
}

}  // namespace tarnwick
