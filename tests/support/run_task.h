#pragma once

#include <optional>
#include <utility>

#include "core/async/task_scope.h"
#include "tests/support/virtual_main_thread.h"

namespace tarnwick {

namespace detail {
template <typename T>
Task<void> keepResult(Task<T> task, std::optional<T>& result) {
  T value = co_await std::move(task);
  result.emplace(std::move(value));
}
}  // namespace detail

/// Runs `task` to its end on virtual time, an hour of it at most, and gives its result; none when
/// it has not ended by then.
template <typename T>
std::optional<T> runToEnd(VirtualMainThread& mainThread, Task<T> task) {
  std::optional<T> result;
  TaskScope scope(mainThread);
  scope.start(detail::keepResult(std::move(task), result));
  mainThread.runUntil([&result] { return result.has_value(); });
  return result;
}

}  // namespace tarnwick
