#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/async/main_thread.h"

namespace tarnwick {

/// What the controller has been told and what it has under way, as the simulated tools see it.
class Journal {
 public:
  /// Counts one thing for as long as it lives, also when its task is destroyed half-way.
  class Underway {
   public:
    explicit Underway(int& count) : count_(count) { ++count_; }
    Underway(const Underway&) = delete;
    Underway& operator=(const Underway&) = delete;
    ~Underway() { --count_; }

   private:
    int& count_;
  };

  int runTools = 0;        ///< under way: tools that only a launch or an installation uses
  int mostRunTools = 0;    ///< the most that were ever under way at once
  int endTools = 0;        ///< under way: stops of the container or of Colima
  int others = 0;          ///< under way: any other tool, and jobs of the workers
  int lastLooks = 0;       ///< under way: those after which a run may fail in spite of a cancel
  int streams = 0;         ///< under way
  int deafStreams = 0;     ///< of these, not asked to end
  int downloadsBegun = 0;  ///< ever: streams that fetch an image or tools

  [[nodiscard]] bool nothingUnderWay() const { return runTools + endTools + others == 0; }

  /// Every line that a tool wrote for the present run, in order.
  std::vector<std::string> lines;

  // What the controller may conclude that the desktop runs from. The moments are those at which
  // it was so; the controller is told later.

  void sawRunning(TimePoint at) {
    if (!seenRunning_) seenRunning_ = at;
  }
  void sawPage(TimePoint at) { answered_ = std::max(answered_, at); }
  /// The controller has been told just now that what it ended is down.
  void toldEnd(TimePoint now) { end_ = now; }
  /// A tool that ends the container is over just now, whatever it told.
  void triedToEnd(TimePoint now) { endTried_ = now; }
  /// No running container was told in answer to a question of `asked`.
  void sawNothing(TimePoint asked) { nothing_ = std::max(nothing_, asked); }
  /// A new run, or a desktop that is gone, has to be looked at afresh.
  void forget() { seenRunning_.reset(); }
  /// A container was seen running, and its page answered then or later, and after the last end.
  [[nodiscard]] bool knowsDesktopRuns() const {
    return seenRunning_ && answered_ >= std::max(*seenRunning_, end_);
  }

  /// Somebody asked for a running container at `moment` or later, and was told of none.
  [[nodiscard]] bool nothingSeenSince(TimePoint moment) const { return nothing_ >= moment; }
  [[nodiscard]] TimePoint endTriedAt() const { return endTried_; }

  /// Tells the story of a schedule that is replayed; empty while nobody listens.
  std::function<void(const std::string& event)> tell;
  void note(const std::string& event) const {
    if (tell) tell(event);
  }

 private:
  std::optional<TimePoint> seenRunning_;
  TimePoint answered_ = TimePoint::min();
  TimePoint end_ = TimePoint::min();
  TimePoint endTried_ = TimePoint::min();
  TimePoint nothing_ = TimePoint::min();
};

}  // namespace tarnwick
