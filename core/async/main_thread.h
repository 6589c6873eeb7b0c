#pragma once

#include <chrono>
#include <functional>

namespace tarnwick {

using Clock = std::chrono::steady_clock;
using Duration = Clock::duration;
using TimePoint = Clock::time_point;

/// The thread that owns all published state and every task. The application's runs on the event
/// loop of its interface, the tests' one on virtual time.
///
/// Posted functions run one after the other on the main thread, never inside the call that posted
/// them. The object outlives everything that was handed a reference to it.
class MainThread {
 public:
  MainThread() = default;
  MainThread(const MainThread&) = delete;
  MainThread& operator=(const MainThread&) = delete;
  virtual ~MainThread() = default;

  /// Runs `work` on the main thread, after everything that was posted before. Any thread.
  virtual void post(std::function<void()> work) = 0;

  /// Runs `work` on the main thread no sooner than `delay` from now. Main thread only.
  virtual void postAfter(Duration delay, std::function<void()> work) = 0;

  /// The monotonic time that delays and deadlines are measured with. Main thread only.
  [[nodiscard]] virtual TimePoint now() const = 0;
};

}  // namespace tarnwick
