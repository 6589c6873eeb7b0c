#include "app/windowed_run.h"

#include <QApplication>
#include <QTimer>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "app/application.h"
#include "app/quit_signals.h"
#include "app/request_handler.h"
#include "app/wish_server.h"
#include "platform/session_bus.h"
#include "ui/common/font_changes.h"
#include "ui/common/logo_view.h"

namespace tarnwick {
namespace {

std::string_view variable(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

int runLoop(QApplication& qt, const AppPaths& paths, Wish wish, SingleInstance& instance) {
  // Never deleted: tasks on worker threads may be in the middle of a tool's run when the process
  // ends, and use them until then.
  auto* backend = new Backend(paths);
  auto* application = new Application(*backend);
  auto* handler = new RequestHandler(
      backend->controller(), backend->cli(), backend->tools(), backend->mainThread(),
      [application](const char* id, const auto& token) { application->openWindow(id, token); });
  const QuitSignals quitSignals([] { QApplication::quit(); });
  // The main window would do so too, but may not be opened for long.
  backend->controller().startMonitor();
  handler->handle({wish, {}}, [](const Answer&) {});
  // After the first picture, which they would delay.
  QTimer::singleShot(0, &qt, [application] { application->joinDesktop(); });
  auto server = std::make_unique<WishServer>(instance.takeSocket(),
                                             [handler](const Request& request, Reply reply) {
                                               handler->handle(request, std::move(reply));
                                             });
  const int status = QApplication::exec();
  // Later starts see that this one takes nothing any more, and wait for its end.
  server.reset();
  application->finish();
  return status;
}

}  // namespace

bool hasDisplay(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "-platform" || argument == "--platform") return true;
  }
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "WAYLAND_SOCKET", "QT_QPA_PLATFORM"}) {
    if (!variable(name).empty()) return true;
  }
  // There a display may have its usual name without any variable that says so.
  return variable("XDG_SESSION_TYPE") == "wayland";
}

int runWithWindows(int& argc, char** argv, const AppPaths& paths, Wish wish,
                   SingleInstance& instance) {
  // The toolkit would wait for its greeting for ever, before there is anything to see.
  forgoSilentSessionBus();
  QApplication qt(argc, argv);
  qt.setWindowIcon(logoIcon());
  const FontChanges fontChanges(qt);
  // Closing every window leaves the application running, to be reached by its tray item or by
  // starting it once more.
  QApplication::setQuitOnLastWindowClosed(false);
  return runLoop(qt, paths, wish, instance);
}

}  // namespace tarnwick
