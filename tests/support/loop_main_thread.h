#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>

#include "core/async/main_thread.h"

namespace tarnwick {

/// A main thread in real time without a toolkit: whoever calls runUntil is it.
class LoopMainThread final : public MainThread {
 public:
  void post(std::function<void()> work) override;
  void postAfter(Duration delay, std::function<void()> work) override;
  [[nodiscard]] TimePoint now() const override { return Clock::now(); }

  /// Runs what is posted, until `done` holds or `limit` has passed; returns whether it held.
  bool runUntil(const std::function<bool()>& done, Duration limit);

  /// The most processor time that one piece of work has taken so far; other load of the machine
  /// does not count.
  [[nodiscard]] Duration longestTurn() const { return longestTurn_; }

 private:
  std::function<void()> next(TimePoint until);

  std::mutex mutex_;
  std::condition_variable posted_;
  std::deque<std::function<void()>> work_;
  std::multimap<TimePoint, std::function<void()>> timers_;
  Duration longestTurn_{};
};

}  // namespace tarnwick
