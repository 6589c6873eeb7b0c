#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace tarnwick {

/// Tells observers that values of one object are about to change. Main thread only.
class ChangeSignal {
 public:
  ChangeSignal();
  ChangeSignal(const ChangeSignal&) = delete;
  ChangeSignal& operator=(const ChangeSignal&) = delete;

  /// Calls `observer` at every announcement until the returned handle is dropped, also from inside
  /// the call. The observer is told of an impending change: it asks for a redraw and reads the
  /// values in a later turn of the main thread, not inside the call.
  [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> observer);

  void announce();

 private:
  struct Observers;
  std::shared_ptr<Observers> observers_;
};

/// A value that screens show. Every assignment is announced, also when the value stays the same,
/// before the new value is stored. Main thread only.
template <typename T>
class Published {
 public:
  Published(ChangeSignal& changes, T initial) : changes_(changes), value_(std::move(initial)) {}
  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;

  [[nodiscard]] const T& get() const { return value_; }
  operator const T&() const { return value_; }  // NOLINT(google-explicit-constructor)
  const T* operator->() const { return &value_; }

  Published& operator=(T value) {
    changes_.announce();
    value_ = std::move(value);
    return *this;
  }

  /// Changes the value in place: one announcement, no copy of a large value.
  template <typename Change>
  void mutate(Change change) {
    changes_.announce();
    change(value_);
  }

 private:
  ChangeSignal& changes_;
  T value_;
};

}  // namespace tarnwick
