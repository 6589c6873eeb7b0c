#include "tests/schedules/invariants.h"

#include <algorithm>

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

// docker stop and colima stop to their limits, and the grace of each.
constexpr Duration longestStop = 63s + 93s;

// What a cancel has to wait for at most: the look at the container, the look for a port's holder,
// the compose version, two compose ups with a removal between them; each to its limit with the
// grace; and the keychain.
constexpr Duration longestCancel = 13s + 8s + 13s + 183s + 63s + 183s + 10s;

std::string conflictId(const DesktopController& c) {
  return c.portConflict.get() ? c.portConflict.get()->id : std::string();
}

bool inOrder(const std::vector<Stage>& stages) {
  auto row = stages.begin();
  while (row != stages.end() && row->state == StageState::done) ++row;
  if (row != stages.end() && row->state != StageState::pending) ++row;
  return std::all_of(row, stages.end(),
                     [](const Stage& rest) { return rest.state == StageState::pending; });
}

}  // namespace

void Invariants::require(bool condition, const char* sentence) {
  if (!condition && broken_.empty()) broken_ = sentence;
}

bool Invariants::hold(After after) {
  checkPhase(after);
  checkValues();
  checkTools();
  checkLimits();
  if (c_.phase.get() != phase_) phaseSince_ = mainThread_.now();
  phase_ = c_.phase.get();
  wasDeaf_ = journal_.deafStreams > 0;
  wasStopping_ = c_.isStopping.get();
  return broken_.empty();
}

void Invariants::cancelPressed() {
  if (c_.phase.get() != Phase::busy) return;
  require(journal_.deafStreams == 0, "a cancel asks the running tool to end");
  if (!cancelled_) downloadsAtCancel_ = journal_.downloadsBegun;
  cancelled_ = mainThread_.now();
  if (journal_.lastLooks == 0) mustSayCancelled_ = true;
  const bool waits = c_.progressText->starts_with("Waiting") && journal_.nothingUnderWay();
  if (waits) mustEndAtOnce_ = true;
}

void Invariants::checkPhase(After after) {
  const Phase phase = c_.phase.get();
  if (phase == phase_) return;
  if (phase == Phase::busy) runBegan(after);
  if (phase_ == Phase::busy) runEnded(after);
  if (phase == Phase::running) {
    require(journal_.knowsDesktopRuns(),
            "running is shown only for a container seen running whose page has answered since");
    require(phase_ == Phase::busy || (!wasStopping_ && !c_.isStopping.get()),
            "the monitor shows nothing as running while it is being stopped");
    ++(phase_ == Phase::busy ? sightings_.shown : sightings_.adopted);
  }
  if (phase_ != Phase::running) return;
  require(phase == Phase::busy || mayBeGone(),
          "only an end, or a look that was asked for since, tells that a running desktop is gone");
  journal_.forget();
  if (phase == Phase::idle && !wasStopping_) ++sightings_.lost;
}

bool Invariants::mayBeGone() const {
  const bool stopEnded = wasStopping_ && !c_.isStopping.get();
  if (stopEnded || journal_.endTriedAt() == mainThread_.now()) return true;
  return !wasStopping_ && journal_.nothingSeenSince(phaseSince_);
}

void Invariants::runBegan(After after) {
  require(after == After::actThatMayBeginARun, "a run begins only when the user asks for one");
  require(c_.log->empty(), "a run begins with an empty log");
  journal_.forget();
  journal_.lines.clear();
  cancelled_.reset();
  mustSayCancelled_ = false;
  mustEndAtOnce_ = false;
  conflictBefore_ = conflictId(c_);
  ++sightings_.runs;
}

void Invariants::runEnded(After after) {
  require(after == After::turn, "an act does not end a run by itself");
  require(journal_.streams == 0, "a run leaves no tool behind");
  checkLines();
  const bool saysCancelled = c_.notice.get() == "Cancelled.";
  require(cancelled_ || !saysCancelled, "only a cancelled run says so");
  if (c_.phase.get() == Phase::running) {
    require(!cancelled_, "a cancelled run does not end with the desktop");
    return;
  }
  const bool conflict = conflictId(c_) != conflictBefore_;
  const bool failed = c_.errorSummary.get().has_value();
  require(saysCancelled || conflict || failed, "a run that ends idle says why");
  require(saysCancelled || conflict || !mustSayCancelled_, "a cancelled run does not fail");
  ++(saysCancelled ? sightings_.cancelled : conflict ? sightings_.conflicts : sightings_.failed);
}

void Invariants::checkLines() {
  const std::string_view log = c_.log->text();
  std::size_t position = 0;
  for (const std::string& line : journal_.lines) {
    position = log.find(line, position);
    if (position == std::string_view::npos) break;
    position += line.size();
  }
  require(position != std::string_view::npos, "the log has every line of the run, in order");
}

void Invariants::checkValues() {
  const bool busy = c_.phase.get() == Phase::busy;
  const auto& progress = c_.progress.get();
  require(!progress || (*progress >= 0 && *progress <= 1), "progress is a share");
  require(busy || (!progress && c_.progressText->empty()), "only a run has progress");
  require(busy || !c_.installing.get(), "only a run installs");
  require(!c_.showDesktop.get() || c_.phase.get() == Phase::running,
          "only a running desktop is shown");
  require(inOrder(c_.stages.get()), "the checklist is done from the top, one row at a time");
}

void Invariants::checkTools() {
  require(journal_.mostRunTools <= 1, "one run at a time");
  require(journal_.runTools == 0 || c_.phase.get() == Phase::busy,
          "a run's tool is under way only while busy");
  const bool downloads = cancelled_ && journal_.downloadsBegun > downloadsAtCancel_;
  require(!downloads || c_.phase.get() != Phase::busy, "no download begins after a cancel");
}

void Invariants::checkLimits() {
  const TimePoint now = mainThread_.now();
  if (!c_.isStopping.get() || !wasStopping_) stoppingSince_ = now;
  if (wasStopping_ && !c_.isStopping.get()) ++sightings_.stops;
  require(now - stoppingSince_ <= longestStop, "a stop ends");
  if (!cancelled_ || c_.phase.get() != Phase::busy) return;
  // Colima may begin to start just after a cancel; it takes a second one to end that.
  if (wasDeaf_ || journal_.deafStreams > 0) cancelled_ = now;
  require(!mustEndAtOnce_ || now == *cancelled_, "a cancel ends the wait for the desktop at once");
  require(now - *cancelled_ <= longestCancel, "a cancelled run ends");
}

bool Invariants::settled(const EngineModel& engine, bool monitored) {
  require(c_.phase.get() != Phase::busy, "every run ends");
  require(!c_.isStopping.get(), "every stop ends");
  require(journal_.streams == 0 && journal_.runTools == 0 && journal_.endTools == 0,
          "no tool is left when all is quiet");
  if (!monitored || !engine.find("docker")) return broken_.empty();
  const bool shown = c_.phase.get() == Phase::running;
  require(engine.containerRuns() || !shown, "a desktop that is gone is shown as stopped");
  const EngineModel::Page page = engine.page(mainThread_.now());
  const bool answers = page.status == 200 && page.port == c_.settings.httpPort.get();
  require(shown || !answers, "a desktop that runs and answers is shown as running");
  return broken_.empty();
}

}  // namespace tarnwick
