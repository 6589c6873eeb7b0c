// What a tool that floods us with 1 GB does to the home screen: memory, and turns of the event
// loop.

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <fmt/format.h>
#include <fstream>
#include <unistd.h>

#include "bench/instant_program.h"
#include "platform/qt/qt_main_thread.h"
#include "ui/common/window_opener.h"
#include "ui/home/home_screen.h"

namespace tarnwick {
namespace {

constexpr double mebibyte = 1024 * 1024;

double residentMebibytes() {
  std::ifstream statm("/proc/self/statm");
  double total = 0;
  double resident = 0;
  statm >> total >> resident;
  return resident * static_cast<double>(::sysconf(_SC_PAGESIZE)) / mebibyte;
}

class NoWindows final : public WindowOpener {
 public:
  void openWindow(const std::string&) override {}
};

using Program = InstantProgram<QtMainThread>;

class Measurement {
 public:
  Measurement(QApplication& application, Program& program)
      : application_(application), controller_(program.controller) {
    QObject::connect(&clock_, &QTimer::timeout, [this] { tick(); });
    clock_.setTimerType(Qt::PreciseTimer);
  }

  int run() {
    QTimer::singleShot(2'000, [this] { begin(); });
    QApplication::exec();
    fmt::print("a tool floods 1 GB ({:.1f} s, {:.0f} MB/s)\n", seconds_, 1'000 / seconds_);
    report("memory above idle, MiB", mostMemory_ - idleMemory_, 30);
    report("longest stall of the interface, ms", longestStall_, 50);
    return 0;
  }

 private:
  void begin() {
    idleMemory_ = mostMemory_ = residentMebibytes();
    controller_.startLaunch(true, false);
    sinceStart_.start();
    sinceTick_.start();
    clock_.start(1);
  }

  void tick() {
    const double passed = static_cast<double>(sinceTick_.nsecsElapsed()) / 1e6;
    sinceTick_.restart();
    longestStall_ = std::max(longestStall_, passed);
    mostMemory_ = std::max(mostMemory_, residentMebibytes());
    // The pull is over when the next row of the checklist is under way.
    if (controller_.stages.get()[1].state == StageState::active) return;
    if (controller_.stages.get()[1].state == StageState::pending) return;
    seconds_ = static_cast<double>(sinceStart_.elapsed()) / 1e3;
    clock_.stop();
    application_.quit();
  }

  static void report(const char* what, double measured, double bound) {
    fmt::print("{:<50}{:10.1f}   at most {:3.0f} {}\n", what, measured, bound,
               measured <= bound ? "met" : "MISSED");
  }

  QApplication& application_;
  DesktopController& controller_;
  QTimer clock_;
  QElapsedTimer sinceStart_;
  QElapsedTimer sinceTick_;
  double idleMemory_ = 0;
  double mostMemory_ = 0;
  double longestStall_ = 0;
  double seconds_ = 0;
};

}  // namespace
}  // namespace tarnwick

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  tarnwick::Program program;
  tarnwick::NoWindows windows;
  tarnwick::HomeScreen screen(program.controller, windows);
  screen.resize(1000, 700);
  screen.show();
  tarnwick::Measurement measurement(application, program);
  const int status = measurement.run();
  std::fflush(nullptr);
  // The launch goes on without us; its worker threads end with the process.
  std::_Exit(status);
}
