#include "core/async/task_scope.h"

namespace tarnwick {

struct TaskScope::Roots {
  std::list<Task<void>> running;
};

TaskScope::TaskScope(MainThread& mainThread)
    : mainThread_(mainThread), roots_(std::make_shared<Roots>()) {}

// Frames go first, while the members of the scope's owner that they use are still alive; a posted
// start then finds the list gone.
TaskScope::~TaskScope() {
  roots_->running.clear();
}

namespace {

// The wrapper removes its own root after the task has ended; removal destroys the frame that is
// just ending, so it happens in a turn of its own.
template <typename Remove>
Task<void> runThenRemove(Task<void> task, Remove remove) {
  // The check takes the frame's own copy of the parameter for a second use.
  co_await std::move(task);  // NOLINT(bugprone-use-after-move)
  remove();
}

}  // namespace

void TaskScope::start(Task<void> task) {
  const std::weak_ptr<Roots> weak = roots_;
  MainThread* const mainThread = &mainThread_;
  auto position = std::make_shared<std::list<Task<void>>::iterator>();
  auto remove = [weak, mainThread, position] {
    mainThread->post([weak, position] {
      if (const auto roots = weak.lock()) roots->running.erase(*position);
    });
  };
  roots_->running.push_back(runThenRemove(std::move(task), std::move(remove)));
  *position = std::prev(roots_->running.end());
  mainThread_.post([weak, position] {
    if (weak.lock()) (*position)->resume();
  });
}

std::size_t TaskScope::size() const {
  return roots_->running.size();
}

}  // namespace tarnwick
