#include "tests/support/virtual_main_thread.h"

#include <thread>
#include <utility>

namespace tarnwick {

void VirtualMainThread::post(std::function<void()> work) {
  const std::lock_guard lock(mutex_);
  posted_.push_back(std::move(work));
}

void VirtualMainThread::postAfter(Duration delay, std::function<void()> work) {
  timers_.emplace(now_ + delay, std::move(work));
}

bool VirtualMainThread::runOne() {
  std::function<void()> work;
  {
    const std::lock_guard lock(mutex_);
    if (posted_.empty()) return false;
    work = std::move(posted_.front());
    posted_.pop_front();
  }
  work();
  return true;
}

bool VirtualMainThread::fireNextTimer(TimePoint until) {
  if (timers_.empty() || timers_.begin()->first > until) return false;
  const auto first = timers_.begin();
  now_ = std::max(now_, first->first);
  const auto work = std::move(first->second);
  timers_.erase(first);
  work();
  return true;
}

void VirtualMainThread::runPosted() {
  while (runOne()) {
  }
}

void VirtualMainThread::advance(Duration duration) {
  const TimePoint until = now_ + duration;
  runPosted();
  while (fireNextTimer(until)) runPosted();
  now_ = until;
}

bool VirtualMainThread::runUntil(const std::function<bool()>& done, Duration limit) {
  const TimePoint until = now_ + limit;
  while (!done()) {
    if (!runOne() && !fireNextTimer(until)) return false;
  }
  return true;
}

bool VirtualMainThread::waitUntil(const std::function<bool()>& done) {
  const auto giveUp = Clock::now() + std::chrono::seconds(20);
  while (!done()) {
    if (runOne()) continue;
    if (Clock::now() > giveUp) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

}  // namespace tarnwick
