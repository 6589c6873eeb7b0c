#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "core/async/arrival.h"
#include "core/async/main_thread.h"
#include "core/async/task.h"

namespace tarnwick {

/// Where blocking calls run, so that the main thread never waits.
class WorkerQueue {
 public:
  WorkerQueue() = default;
  WorkerQueue(const WorkerQueue&) = delete;
  WorkerQueue& operator=(const WorkerQueue&) = delete;
  virtual ~WorkerQueue() = default;

  /// Runs `work` on some worker thread, concurrently with other work. Any thread.
  virtual void run(std::function<void()> work) = 0;
};

/// Worker threads that are made when all others are busy and then kept: a blocking call never waits
/// for another one, however long that takes. The destructor waits for running work and drops
/// what has not begun.
class ThreadPool final : public WorkerQueue {
 public:
  ThreadPool() = default;
  ~ThreadPool() override;
  void run(std::function<void()> work) override;

 private:
  void serve();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> waiting_;
  std::vector<std::thread> threads_;
  std::size_t idle_ = 0;
  bool closing_ = false;
};

/// Runs `job` on a worker and resumes the awaiting task on the main thread with its result.
/// `job` must own what it uses: when the awaiting task is destroyed, the job still runs to its end.
template <typename T>
Task<T> onWorker(WorkerQueue& workers, MainThread& mainThread, std::function<T()> job) {
  Arrival<T> arrival;
  const auto state = arrival.state();
  std::function<void()> work = [state, &mainThread, job = std::move(job)] {
    state->value.emplace(job());
    mainThread.post([state] { state->arrive(); });
  };
  workers.run(std::move(work));
  T result = co_await arrival;
  co_return result;
}

}  // namespace tarnwick
