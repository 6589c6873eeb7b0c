#include "app/quit_signals.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>
#include <utility>

namespace tarnwick {
namespace {

constexpr int quitting[] = {SIGTERM, SIGINT, SIGHUP};
std::atomic<int> writeEnd = -1;

void onSignal(int) {
  const int error = errno;
  const char byte = 0;
  // A full pipe already says what there is to say.
  [[maybe_unused]] const ssize_t written = write(writeEnd.load(), &byte, 1);
  errno = error;
}

void setHandler(void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (const int number : quitting) sigaction(number, &action, nullptr);
}

}  // namespace

QuitSignals::QuitSignals(std::function<void()> quit) {
  if (pipe2(pipe_, O_CLOEXEC | O_NONBLOCK) != 0) return;
  writeEnd = pipe_[1];
  notifier_ = std::make_unique<QSocketNotifier>(pipe_[0], QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated,
                   [from = pipe_[0], quit = std::move(quit)] {
                     char bytes[16];
                     while (read(from, bytes, sizeof bytes) > 0) continue;
                     quit();
                   });
  setHandler(&onSignal);
}

QuitSignals::~QuitSignals() {
  if (pipe_[0] < 0) return;
  setHandler(SIG_DFL);
  notifier_.reset();
  close(pipe_[0]);
  close(pipe_[1]);
}

}  // namespace tarnwick
