#pragma once

#include <memory>

#include "core/async/main_thread.h"
#include "core/async/worker_queue.h"
#include "core/controller/desktop_controller.h"
#include "core/controller/sleep_inhibitor.h"

namespace tarnwick {

/// Keeps the computer awake while an image is downloaded, and only then. What it is given outlives
/// it, and the inhibitor also the queue's threads. Main thread only.
class StayAwake {
 public:
  StayAwake(DesktopController& controller, SleepInhibitor& inhibitor, WorkerQueue& workers,
            MainThread& mainThread);
  StayAwake(const StayAwake&) = delete;
  StayAwake& operator=(const StayAwake&) = delete;
  ~StayAwake();

 private:
  struct State;
  std::shared_ptr<State> state_;
  std::shared_ptr<void> observation_;
};

}  // namespace tarnwick
