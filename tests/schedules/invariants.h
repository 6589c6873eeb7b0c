#pragma once

#include <optional>
#include <string>

#include "core/controller/desktop_controller.h"
#include "tests/schedules/engine_model.h"
#include "tests/schedules/journal.h"

namespace tarnwick {

/// What schedules came across: a search that never saw a desktop would prove little.
struct Sightings {
  int runs = 0;
  int shown = 0;
  int adopted = 0;
  int lost = 0;
  int failed = 0;
  int cancelled = 0;
  int conflicts = 0;
  int stops = 0;
};

/// What holds between any two turns of the main thread, whatever the user, the tools and the
/// machine do. Looks at one controller after each turn and each act.
class Invariants {
 public:
  enum class After { turn, actThatMayBeginARun, otherAct };

  Invariants(const DesktopController& controller, Journal& journal, const MainThread& mainThread,
             Sightings& sightings)
      : c_(controller), journal_(journal), mainThread_(mainThread), sightings_(sightings) {}

  /// Whether all holds. Once it does not, it stays so.
  bool hold(After after);
  /// The user has just asked for the end of the run, if there is one.
  void cancelPressed();
  /// After a while in which nobody did anything and every tool worked.
  bool settled(const EngineModel& engine, bool monitored);
  /// The first that was broken; empty while all hold.
  [[nodiscard]] const std::string& broken() const { return broken_; }

 private:
  void require(bool condition, const char* sentence);
  void checkValues();
  void checkTools();
  void checkLimits();
  void checkPhase(After after);
  [[nodiscard]] bool mayBeGone() const;
  void runBegan(After after);
  void runEnded(After after);
  void checkLines();

  const DesktopController& c_;
  Journal& journal_;
  const MainThread& mainThread_;
  Sightings& sightings_;
  std::string broken_;

  Phase phase_ = Phase::idle;  ///< as it was at the last look
  TimePoint phaseSince_{};
  bool wasStopping_ = false;
  bool wasDeaf_ = false;  ///< a long tool was running that nobody had asked to end
  TimePoint stoppingSince_{};
  std::optional<TimePoint> cancelled_;  ///< the present run
  bool mustSayCancelled_ = false;
  bool mustEndAtOnce_ = false;
  int downloadsAtCancel_ = 0;
  std::string conflictBefore_;  ///< id of the conflict that was shown when the run began
};

}  // namespace tarnwick
