#pragma once

#include <coroutine>
#include <memory>
#include <optional>
#include <utility>

namespace tarnwick {

/// A value that arrives once, for one task that awaits it on the main thread.
///
/// The producer keeps the shared state: it may fill `value` on any thread, and then calls
/// `arrive()` on the main thread from a posted function. A task that was destroyed meanwhile is
/// not resumed.
///
///     auto arrival = Arrival<int>();
///     start(arrival.state());
///     const int value = co_await arrival;
template <typename T>
class Arrival {
 public:
  struct State {
    std::optional<T> value;
    bool arrived = false;
    std::coroutine_handle<> waiter;

    /// Resumes the waiting task. Main thread only; calls after the first do nothing.
    void arrive() {
      if (std::exchange(arrived, true)) return;
      if (waiter) std::exchange(waiter, {}).resume();
    }
  };

  Arrival() : state_(std::make_shared<State>()) {}
  Arrival(const Arrival&) = delete;
  Arrival& operator=(const Arrival&) = delete;
  ~Arrival() { state_->waiter = {}; }

  [[nodiscard]] std::shared_ptr<State> state() const { return state_; }

  [[nodiscard]] bool await_ready() const noexcept { return state_->arrived; }
  void await_suspend(std::coroutine_handle<> waiter) noexcept { state_->waiter = waiter; }
  T await_resume() { return std::move(*state_->value); }

 private:
  std::shared_ptr<State> state_;
};

}  // namespace tarnwick
