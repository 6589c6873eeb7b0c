#include "core/controller/stay_awake.h"

#include <utility>

namespace tarnwick {

namespace {

constexpr const char* reason = "A Linux desktop is being downloaded.";

}  // namespace

/// Kept alive by what is posted and by a worker that still waits for an answer.
struct StayAwake::State : std::enable_shared_from_this<StayAwake::State> {
  State(DesktopController& itsController, SleepInhibitor& itsInhibitor, WorkerQueue& itsWorkers,
        MainThread& itsMainThread)
      : controller(itsController),
        inhibitor(itsInhibitor),
        workers(itsWorkers),
        mainThread(itsMainThread) {}

  // The values are about to change; they are read in a later turn.
  void lookSoon() {
    if (std::exchange(posted, true)) return;
    mainThread.post([self = shared_from_this()] {
      self->posted = false;
      self->look();
    });
  }

  void look() {
    if (closed || !controller.downloading()) {
      hold.reset();
      refused = false;
      return;
    }
    if (hold || asking || refused) return;
    asking = true;
    workers.run([self = shared_from_this()] {
      SleepInhibitor::Hold answer = self->inhibitor.hold(reason);
      self->mainThread.post([self, answer = std::move(answer)]() mutable {
        self->asking = false;
        self->refused = answer == nullptr;
        self->hold = std::move(answer);
        // The download may have ended meanwhile.
        self->look();
      });
    });
  }

  DesktopController& controller;
  SleepInhibitor& inhibitor;
  WorkerQueue& workers;
  MainThread& mainThread;
  SleepInhibitor::Hold hold;
  bool posted = false;
  bool asking = false;
  bool refused = false;  ///< by everybody, for this download
  bool closed = false;
};

StayAwake::StayAwake(DesktopController& controller, SleepInhibitor& inhibitor, WorkerQueue& workers,
                     MainThread& mainThread)
    : state_(std::make_shared<State>(controller, inhibitor, workers, mainThread)),
      observation_(controller.changes().observe([state = state_.get()] { state->lookSoon(); })) {}

StayAwake::~StayAwake() {
  state_->closed = true;
  state_->hold.reset();
}

}  // namespace tarnwick
