#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sys/resource.h>

#include "app/application.h"
#include "app/quit_signals.h"
#include "app/single_instance.h"
#include "core/settings/app_paths.h"
#include "platform/user_folders.h"
#include "ui/common/font_changes.h"
#include "ui/common/logo_view.h"

namespace tarnwick {
namespace {

/// The desktop password is in our memory; no image of that is to reach the disk.
void forbidCoreDumps() {
  const rlimit none = {0, 0};
  setrlimit(RLIMIT_CORE, &none);
}

void nameProgram() {
  QCoreApplication::setApplicationName(QStringLiteral("tarnwick"));
  QCoreApplication::setApplicationVersion(QStringLiteral(TARNWICK_VERSION));
  // The base name of the desktop file, from which the shell takes icon and identity.
  QGuiApplication::setDesktopFileName(QStringLiteral("tarnwick"));
}

int run(QApplication& qt) {
  qt.setWindowIcon(logoIcon());
  const FontChanges fontChanges(qt);
  // Closing every window leaves the application running, to be reached by its tray item or by
  // starting it once more.
  QApplication::setQuitOnLastWindowClosed(false);
  const AppPaths paths(userDataFolder(), userHomeFolder());
  SingleInstance instance(QString::fromStdString(paths.supportDir()));
  Application* application = nullptr;
  const auto raise = [&application] {
    if (application) application->windows().openWindow(mainWindowId);
  };
  switch (instance.enter(raise)) {
    case SingleInstance::Role::raisedOther:
      return EXIT_SUCCESS;
    case SingleInstance::Role::otherIsSilent:
      std::fputs("Tarnwick is running already, but does not answer.\n", stderr);
      return EXIT_FAILURE;
    case SingleInstance::Role::first:
      break;
  }
  // Never deleted: tasks on worker threads may be in the middle of a tool's run when the process
  // ends, and use them until then.
  auto* backend = new Backend(paths);
  application = new Application(*backend);
  const QuitSignals quitSignals([] { QApplication::quit(); });
  raise();
  // After the first picture, which it would delay.
  QTimer::singleShot(0, &qt, [application] { application->showTrayItem(); });
  const int status = QApplication::exec();
  application->finish();
  return status;
}

}  // namespace
}  // namespace tarnwick

int main(int argc, char** argv) {
  tarnwick::forbidCoreDumps();
  tarnwick::nameProgram();
  auto qt = std::make_unique<QApplication>(argc, argv);
  const int status = tarnwick::run(*qt);
  // Qt and the web engine end in order. What is left are worker threads that wait for tools; the
  // process ends without them, so no destructor of a static object may run under their feet.
  qt.reset();
  std::fflush(nullptr);
  std::_Exit(status);
}
