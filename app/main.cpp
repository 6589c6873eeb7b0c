#include <QGuiApplication>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/resource.h>
#include <variant>
#include <vector>

#include "app/activation.h"
#include "app/command_line.h"
#include "app/single_instance.h"
#include "app/windowed_run.h"
#include "app/windowless_run.h"
#include "core/settings/app_paths.h"
#include "platform/user_folders.h"

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

int tell(const Answer& answer) {
  const bool isAnswer = answer.code == ExitCode::done || answer.code == ExitCode::notRunning;
  if (!answer.text.empty()) std::fprintf(isAnswer ? stdout : stderr, "%s\n", answer.text.c_str());
  return static_cast<int>(answer.code);
}

int tell(Information wanted) {
  if (wanted == Information::help) {
    std::fputs(helpText(), stdout);
  } else {
    std::puts("tarnwick " TARNWICK_VERSION);
  }
  return EXIT_SUCCESS;
}

int tell(const WrongUse& wrong) {
  std::fprintf(stderr, "tarnwick: %s Try \"tarnwick --help\".\n", wrong.sentence.c_str());
  return static_cast<int>(ExitCode::wrongUse);
}

bool needsWindows(Wish wish) {
  return wish != Wish::stop && wish != Wish::status && wish != Wish::statusJson;
}

int fulfil(int argc, char** argv, Wish wish) {
  nameProgram();
  const AppPaths paths(userDataFolder(), userHomeFolder());
  SingleInstance instance(paths.supportDir());
  const Request request{wish, activationTokenOfThisStart()};
  const SingleInstance::Entry entry =
      needsWindows(wish) ? instance.enter(request) : instance.passOn(request);
  switch (entry.role) {
    case SingleInstance::Role::passedOn:
      return tell(entry.answer);
    case SingleInstance::Role::otherIsSilent:
      return tell({ExitCode::failed, "Tarnwick is running already, but does not answer."});
    case SingleInstance::Role::first:
      break;
  }
  if (!needsWindows(wish)) return tell(runWithoutWindows(argc, argv, paths, wish));
  if (!hasDisplay(argc, argv)) {
    return tell({ExitCode::failed, "There is no display to open a window on."});
  }
  return runWithWindows(argc, argv, paths, wish, instance);
}

int run(int argc, char** argv) {
  const CommandLine wanted = parseCommandLine(std::vector<std::string>(argv + 1, argv + argc));
  if (const auto* wish = std::get_if<Wish>(&wanted)) return fulfil(argc, argv, *wish);
  if (const auto* information = std::get_if<Information>(&wanted)) return tell(*information);
  return tell(std::get<WrongUse>(wanted));
}

}  // namespace
}  // namespace tarnwick

int main(int argc, char** argv) {
  tarnwick::forbidCoreDumps();
  const int status = tarnwick::run(argc, argv);
  // Qt and the web engine have ended in order. What is left are worker threads that wait for tools;
  // the process ends without them, so no destructor of a static object may run under their feet.
  std::fflush(nullptr);
  std::_Exit(status);
}
