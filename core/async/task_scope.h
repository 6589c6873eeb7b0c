#pragma once

#include <list>
#include <memory>

#include "core/async/main_thread.h"
#include "core/async/task.h"

namespace tarnwick {

/// Owns root tasks. A started task begins in a later turn of the main thread; when the scope is
/// destroyed, tasks that have not ended are destroyed where they are suspended. Main thread only.
class TaskScope {
 public:
  explicit TaskScope(MainThread& mainThread);
  TaskScope(const TaskScope&) = delete;
  TaskScope& operator=(const TaskScope&) = delete;
  ~TaskScope();

  /// Takes the task over and runs it to its end.
  void start(Task<void> task);

  /// Number of started tasks that have not ended yet.
  [[nodiscard]] std::size_t size() const;

 private:
  struct Roots;
  MainThread& mainThread_;
  std::shared_ptr<Roots> roots_;
};

}  // namespace tarnwick
