#pragma once

#include <utility>

#include "core/async/main_thread.h"
#include "core/async/worker_queue.h"

namespace tarnwick {

/// Workers on the main thread's virtual time: work runs there, `delay` after it was handed in, so
/// that every order of answers can be replayed. For work that comes from the main thread.
class VirtualWorkerQueue final : public WorkerQueue {
 public:
  explicit VirtualWorkerQueue(MainThread& mainThread) : mainThread_(mainThread) {}

  Duration delay{};

  void run(std::function<void()> work) override { mainThread_.postAfter(delay, std::move(work)); }

 private:
  MainThread& mainThread_;
};

}  // namespace tarnwick
