#include "core/async/worker_queue.h"

namespace tarnwick {

ThreadPool::~ThreadPool() {
  {
    const std::lock_guard lock(mutex_);
    closing_ = true;
    waiting_.clear();
  }
  changed_.notify_all();
  for (auto& thread : threads_) thread.join();
}

void ThreadPool::run(std::function<void()> work) {
  const std::lock_guard lock(mutex_);
  if (closing_) return;
  waiting_.push_back(std::move(work));
  if (waiting_.size() > idle_) {
    threads_.emplace_back([this] { serve(); });
  } else {
    changed_.notify_one();
  }
}

void ThreadPool::serve() {
  std::unique_lock lock(mutex_);
  while (true) {
    ++idle_;
    changed_.wait(lock, [this] { return closing_ || !waiting_.empty(); });
    --idle_;
    if (waiting_.empty()) return;
    auto work = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    work();
    // What the work held may be destroyed here; that must not happen under the lock.
    work = nullptr;
    lock.lock();
  }
}

}  // namespace tarnwick
