#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace tarnwick {

/// Turns SIGTERM, SIGINT and SIGHUP into an ordinary quit. One object at a time; interface thread.
class QuitSignals {
 public:
  /// `quit` is called from the event loop.
  explicit QuitSignals(std::function<void()> quit);
  QuitSignals(const QuitSignals&) = delete;
  QuitSignals& operator=(const QuitSignals&) = delete;
  ~QuitSignals();

 private:
  int pipe_[2] = {-1, -1};
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace tarnwick
