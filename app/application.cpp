#include "app/application.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include "app/quit_hook.h"
#include "core/process/tool_stream.h"
#include "platform/user_folders.h"
#include "ui/logs_window/logs_window.h"
#include "ui/main_window/main_window.h"
#include "ui/settings_window/settings_window.h"

namespace tarnwick {
namespace {

std::string imageRegistry() {
  const QByteArray wanted = qgetenv("TARNWICK_IMAGE_REGISTRY");
  return wanted.isEmpty() ? std::string(TARNWICK_IMAGE_REGISTRY) : wanted.toStdString();
}

QString below(const QString& folder, const char* name) {
  return folder + QLatin1Char('/') + QLatin1String(name);
}

}  // namespace

Application::Application(const AppPaths& paths)
    : paths_(paths),
      tools_(Tools::Config::fromProcess(), paths_),
      cli_(tools_, workers_, mainThread_),
      store_(userConfigFolder() + "/tarnwick/settings.json",
             [this](const std::string& sentence) { tellProblem(sentence); }),
      loginItem_(userConfigFolder(), QCoreApplication::applicationFilePath().toStdString()),
      controller_(ControllerServices{
          mainThread_, workers_, cli_, tools_, ToolStream::factory(tools_, workers_, mainThread_),
          store_, secrets_, loginItem_, random_, httpProbe_, workspace_, paths_, imageRegistry()}),
      docker_(cli_, tools_),
      desktopServices_(controller_.settings, workspace_,
                       below(QString::fromStdString(paths_.supportDir()), "web"),
                       below(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation),
                             "tarnwick/web")),
      phaseWatch_([this] { watchPhase(); }) {
  listening_ = &controller_;
  for (const std::string& problem : earlyProblems_) controller_.report(problem);
  phaseWatch_.observe(controller_.changes());
  addWindows();
}

void Application::addWindows() {
  windows_.add(mainWindowId, [this] {
    return new MainWindow(controller_, windows_, desktopServices_, [this] {
      WebModule web;
      web.module = web_.module();
      web.error = web_.error();
      return web;
    });
  });
  windows_.add(settingsWindowId, [this] {
    return new SettingsWindow({controller_, mainThread_, dialogs_, workspace_, paths_});
  });
  windows_.add(logsWindowId, [this] {
    return new LogsWindow({docker_, mainThread_, workers_, dialogs_});
  });
}

void Application::showTrayItem() {
  tray_.emplace(controller_, windows_);
  tray_->show();
}

void Application::finish() {
  tray_.reset();
  windows_.closeAll();
  stopColimaIfWanted(store_, tools_, cli_);
}

void Application::tellProblem(const std::string& sentence) {
  if (listening_) {
    listening_->report(sentence);
  } else {
    earlyProblems_.push_back(sentence);
  }
}

void Application::watchPhase() {
  const bool busy = controller_.phase.get() == Phase::busy;
  // A run may make a new container, with a new certificate.
  if (busy && !wasBusy_) web_.forgetCertificate();
  wasBusy_ = busy;
}

}  // namespace tarnwick
