#include "tests/support/loop_main_thread.h"

#include <algorithm>
#include <time.h>
#include <utility>

namespace tarnwick {
namespace {

Duration processorTime() {
  timespec used{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
  return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
}

}  // namespace

void LoopMainThread::post(std::function<void()> work) {
  {
    const std::lock_guard lock(mutex_);
    work_.push_back(std::move(work));
  }
  posted_.notify_one();
}

void LoopMainThread::postAfter(Duration delay, std::function<void()> work) {
  timers_.emplace(now() + delay, std::move(work));
}

std::function<void()> LoopMainThread::next(TimePoint until) {
  std::unique_lock lock(mutex_);
  const TimePoint due = timers_.empty() ? until : std::min(until, timers_.begin()->first);
  posted_.wait_until(lock, due, [this] { return !work_.empty(); });
  std::function<void()> work;
  if (!work_.empty()) {
    work = std::move(work_.front());
    work_.pop_front();
  } else if (!timers_.empty() && timers_.begin()->first <= now()) {
    work = std::move(timers_.begin()->second);
    timers_.erase(timers_.begin());
  }
  return work;
}

bool LoopMainThread::runUntil(const std::function<bool()>& done, Duration limit) {
  const TimePoint until = now() + limit;
  while (!done()) {
    if (now() >= until) return false;
    if (const auto work = next(until)) {
      const Duration before = processorTime();
      work();
      longestTurn_ = std::max(longestTurn_, processorTime() - before);
    }
  }
  return true;
}

}  // namespace tarnwick
