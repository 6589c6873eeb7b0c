#include "platform/qt/qt_main_thread.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

namespace tarnwick {
namespace {

using Work = std::function<void()>;

/// Well below a frame at 60 Hz, so that a flood of posts never shows as a stutter.
constexpr auto longestTurn = std::chrono::milliseconds(8);

/// The timers count whole milliseconds, may be a little early, and have a longest time.
std::chrono::milliseconds waitUntil(TimePoint due) {
  constexpr auto longestWait = std::chrono::hours(24);
  return std::chrono::ceil<std::chrono::milliseconds>(
      std::clamp<Duration>(due - Clock::now(), Duration::zero(), longestWait));
}

}  // namespace

class QtMainThread::Inbox final : public QObject {
 public:
  Inbox() {
    // Posted events are all sent before the loop looks at anything else, so that a turn that went
    // on by posting an event would keep input out. A timer waits for its round.
    nextTurn_.setSingleShot(true);
    nextTurn_.setInterval(0);
    connect(&nextTurn_, &QTimer::timeout, this, [this] { runTurn(); });
  }

  void add(Work work) {
    {
      const std::lock_guard lock(mutex_);
      waiting_.push_back(std::move(work));
      if (std::exchange(turnIsDue_, true)) return;
    }
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
  }

  void runAt(TimePoint due, Work work) {
    // A child of this object, so that it goes with it, and with it the work.
    auto* timer = new QTimer(this);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    connect(timer, &QTimer::timeout, this, [timer, due, work = std::move(work)]() mutable {
      if (Clock::now() < due) {
        timer->start(waitUntil(due));
        return;
      }
      timer->deleteLater();
      const Work last = std::move(work);
      last();
    });
    timer->start(waitUntil(due));
  }

 protected:
  bool event(QEvent* event) override {
    if (event->type() != QEvent::User) return QObject::event(event);
    runTurn();
    return true;
  }

 private:
  void runTurn() {
    // Started before the work, which may run a nested loop that has to go on with the rest.
    nextTurn_.start();
    const TimePoint end = Clock::now() + longestTurn;
    do {
      std::optional<Work> work = takeFirst();
      if (!work) return;
      (*work)();
    } while (Clock::now() < end);
  }

  std::optional<Work> takeFirst() {
    const std::lock_guard lock(mutex_);
    if (waiting_.empty()) {
      nextTurn_.stop();
      turnIsDue_ = false;
      return std::nullopt;
    }
    Work work = std::move(waiting_.front());
    waiting_.pop_front();
    return work;
  }

  std::mutex mutex_;
  std::deque<Work> waiting_;
  bool turnIsDue_ = false;  ///< a turn runs, or an event or the timer will start one
  QTimer nextTurn_;
};

QtMainThread::QtMainThread() : inbox_(std::make_unique<Inbox>()) {}

QtMainThread::~QtMainThread() = default;

void QtMainThread::post(std::function<void()> work) {
  inbox_->add(std::move(work));
}

void QtMainThread::postAfter(Duration delay, std::function<void()> work) {
  inbox_->runAt(Clock::now() + delay, std::move(work));
}

}  // namespace tarnwick
