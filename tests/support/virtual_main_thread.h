#pragma once

#include <deque>
#include <map>
#include <mutex>

#include "core/async/main_thread.h"

namespace tarnwick {

/// A main thread on virtual time: time passes only when nothing is left to do, so hours of waiting
/// are tested at once. Posts from other threads are accepted.
class VirtualMainThread final : public MainThread {
 public:
  void post(std::function<void()> work) override;
  void postAfter(Duration delay, std::function<void()> work) override;
  [[nodiscard]] TimePoint now() const override { return now_; }

  /// Runs all posted work, without letting time pass.
  void runPosted();

  /// Runs posted work and timers until virtual time has advanced by `duration`.
  void advance(Duration duration);

  /// Runs until `done` holds or `limit` of virtual time has passed; returns whether it held.
  bool runUntil(const std::function<bool()>& done, Duration limit = std::chrono::hours(1));

  /// As runUntil, but also waits (in real time, up to 20 s) for posts of other threads.
  bool waitUntil(const std::function<bool()>& done);

 private:
  bool runOne();
  bool fireNextTimer(TimePoint until);

  std::mutex mutex_;
  std::deque<std::function<void()>> posted_;
  std::multimap<TimePoint, std::function<void()>> timers_;
  TimePoint now_{};
};

}  // namespace tarnwick
