#pragma once

#include <coroutine>
#include <exception>
#include <optional>
#include <utility>

namespace tarnwick {

template <typename T>
class Task;

namespace detail {

/// Hands control to the task that awaits the finished one, or back to whoever resumed it.
struct FinalAwaiter {
  [[nodiscard]] bool await_ready() const noexcept { return false; }
  template <typename Promise>
  std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> finished) const noexcept {
    const std::coroutine_handle<> continuation = finished.promise().continuation;
    if (continuation) return continuation;
    return std::noop_coroutine();
  }
  void await_resume() const noexcept {}
};

struct PromiseBase {
  std::coroutine_handle<> continuation;

  [[nodiscard]] std::suspend_always initial_suspend() const noexcept { return {}; }
  [[nodiscard]] FinalAwaiter final_suspend() const noexcept { return {}; }
  // Expected failures are values here; what still throws is a defect or a machine out of memory.
  void unhandled_exception() const noexcept { std::terminate(); }
};

template <typename T>
struct Promise : PromiseBase {
  std::optional<T> value;

  Task<T> get_return_object() noexcept;
  void return_value(T result) { value.emplace(std::move(result)); }
  T take() { return std::move(*value); }
};

template <>
struct Promise<void> : PromiseBase {
  Task<void> get_return_object() noexcept;
  void return_void() const noexcept {}
  void take() const noexcept {}
};

}  // namespace detail

/// A lazy piece of asynchronous work on the main thread: nothing runs before it is awaited (or
/// started by a TaskScope), and it is awaited at most once, as an rvalue. Destroying a task
/// destroys its suspended frame with everything in it.
template <typename T = void>
class [[nodiscard]] Task {
 public:
  using promise_type = detail::Promise<T>;

  explicit Task(std::coroutine_handle<promise_type> frame) noexcept : frame_(frame) {}
  Task(Task&& other) noexcept : frame_(std::exchange(other.frame_, {})) {}
  Task& operator=(Task&& other) noexcept {
    std::swap(frame_, other.frame_);
    return *this;
  }
  Task(const Task&) = delete;
  Task& operator=(const Task&) = delete;
  ~Task() {
    if (frame_) frame_.destroy();
  }

  class Awaiter {
   public:
    explicit Awaiter(std::coroutine_handle<promise_type> frame) noexcept : frame_(frame) {}
    [[nodiscard]] bool await_ready() const noexcept { return false; }
    std::coroutine_handle<> await_suspend(std::coroutine_handle<> awaiting) noexcept {
      frame_.promise().continuation = awaiting;
      return frame_;
    }
    T await_resume() { return frame_.promise().take(); }

   private:
    std::coroutine_handle<promise_type> frame_;
  };

  Awaiter operator co_await() && noexcept { return Awaiter(frame_); }

  /// Runs the task up to its first suspension. For TaskScope.
  void resume() { frame_.resume(); }
  [[nodiscard]] bool done() const noexcept { return !frame_ || frame_.done(); }

 private:
  std::coroutine_handle<promise_type> frame_;
};

namespace detail {

template <typename T>
Task<T> Promise<T>::get_return_object() noexcept {
  return Task<T>(std::coroutine_handle<Promise<T>>::from_promise(*this));
}

inline Task<void> Promise<void>::get_return_object() noexcept {
  return Task<void>(std::coroutine_handle<Promise<void>>::from_promise(*this));
}

}  // namespace detail
}  // namespace tarnwick
