#include "app/windowless_run.h"

#include <QCoreApplication>
#include <utility>

#include "app/backend.h"
#include "app/desktop_status.h"
#include "app/stop_desktop.h"
#include "core/async/task_scope.h"

namespace tarnwick {
namespace {

Task<void> fulfilAndQuit(Backend& backend, Wish wish, Answer& answer) {
  if (wish == Wish::stop) {
    const Answer outcome = co_await stopDesktop(backend.controller(), backend.cli(),
                                                backend.tools(), backend.mainThread());
    answer = outcome;
  } else {
    backend.controller().startMonitor();
    co_await firstLook(backend.controller(), backend.mainThread());
    answer = statusAnswer(statusOf(backend.controller()), wish);
  }
  QCoreApplication::quit();
}

}  // namespace

Answer runWithoutWindows(int& argc, char** argv, const AppPaths& paths, Wish wish) {
  const QCoreApplication qt(argc, argv);
  // Never deleted: tasks on worker threads may use it until the process ends.
  auto* backend = new Backend(paths);
  Answer answer(ExitCode::failed, "Tarnwick was asked to end.");
  TaskScope tasks(backend->mainThread());
  tasks.start(fulfilAndQuit(*backend, wish, answer));
  QCoreApplication::exec();
  return answer;
}

}  // namespace tarnwick
