#include "tests/schedules/simulated_tools.h"

#include <algorithm>
#include <fmt/format.h>

#include "core/async/sleep.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

enum class Outcome {
  works,
  fails,        ///< and does nothing
  seemsToFail,  ///< but does it
  timesOut,
  timesOutWithEffect,
  cannotStart,
};

Outcome drawOutcome(ToolWorld& world) {
  if (!world.trouble()) return Outcome::works;
  return world.dice.pick({Outcome::fails, Outcome::fails, Outcome::seemsToFail, Outcome::timesOut,
                          Outcome::timesOutWithEffect, Outcome::cannotStart});
}

bool takesEffect(Outcome outcome) {
  return outcome == Outcome::works || outcome == Outcome::seemsToFail ||
         outcome == Outcome::timesOutWithEffect;
}

CommandResult told(Outcome outcome, CommandResult done) {
  switch (outcome) {
    case Outcome::works:
      break;
    case Outcome::fails:
    case Outcome::seemsToFail:
      return CommandResult(1, {}, "something went wrong", false);
    case Outcome::timesOut:
      return CommandResult(-1, {}, {}, true);
    case Outcome::timesOutWithEffect:
      return CommandResult(143, {}, {}, true);
    case Outcome::cannotStart:
      return CommandResult(-1, {}, "Permission denied", false);
  }
  return done;
}

/// Whether only a launch or an installation uses the command.
bool isOfRun(const std::vector<std::string>& words) {
  static const std::set<std::string> verbs = {"info", "image", "compose", "run", "logs"};
  return words.front() == "lsof" || words.front() == "docker-compose" ||
         (words.front() == "docker" && verbs.contains(words[1]));
}

bool isEnd(const std::vector<std::string>& words) {
  return words.front() != "brew" && (words[1] == "stop" || words[1] == "rm");
}

/// Before the answer is heeded nobody looks for a cancel.
bool isLastLook(const std::vector<std::string>& words) {
  return words.front() == "docker" && (words[1] == "info" || words[1] == "logs");
}

bool isCreation(const std::vector<std::string>& words) {
  return words.front() == "docker-compose" || words[1] == "run" ||
         (words[1] == "compose" && words[2] != "version");
}

/// What the controller knows from now on, by a command that it asked for at `asked`.
void learn(ToolWorld& world, const std::vector<std::string>& words, const CommandResult& result,
           TimePoint asked, TimePoint sampled) {
  Journal& journal = world.journal;
  const TimePoint now = world.mainThread.now();
  const bool ends = isEnd(words);
  const bool runs = words[1] == "inspect" && result.out.starts_with("true");
  if (words[1] == "inspect" && !runs) journal.sawNothing(asked);
  if (ends) journal.triedToEnd(now);
  if (!result.succeeded()) return;
  if (ends) journal.toldEnd(now);
  if (runs || isCreation(words)) journal.sawRunning(sampled);
}

}  // namespace

Duration ToolWorld::drawDelay(Duration limit) {
  if (manners.quick) return dice.pick<Duration>({0ms, 1ms, 40ms, 300ms});
  const Duration delay = dice.pick<Duration>({0ms, 0ms, 1ms, 20ms, 300ms, 900ms, 2s, 5s, 9s});
  return std::min(delay, limit);
}

Task<CommandResult> SimulatedRunner::run(std::string exe, std::vector<std::string> args,
                                         double timeout, Environment) {
  std::vector<std::string> words = {exe.substr(exe.rfind('/') + 1)};
  words.insert(words.end(), args.begin(), args.end());
  const auto limit = std::chrono::seconds(static_cast<int>(timeout));
  int unlisted = 0;
  Journal& journal = world_.journal;
  const bool ofRun = isOfRun(words);
  const Journal::Underway underway(ofRun          ? journal.runTools
                                   : isEnd(words) ? journal.endTools
                                                  : journal.others);
  const Journal::Underway look(isLastLook(words) ? journal.lastLooks : unlisted);
  journal.mostRunTools = std::max(journal.mostRunTools, journal.runTools);
  co_return co_await carryOut(std::move(words), limit);
}

Task<CommandResult> SimulatedRunner::carryOut(std::vector<std::string> words, Duration limit) {
  const Outcome outcome = drawOutcome(world_);
  const bool late = outcome == Outcome::timesOut || outcome == Outcome::timesOutWithEffect;
  const Duration whole =
      late ? limit + world_.dice.pick<Duration>({0s, 3s}) : world_.drawDelay(limit);
  const TimePoint asked = world_.mainThread.now();
  const Duration before = whole * static_cast<int>(world_.dice.below(3)) / 2;
  CancellationToken never;
  if (before > 0s) {
    co_await sleepFor(world_.mainThread, before, never);
  }
  const TimePoint sampled = world_.mainThread.now();
  CommandResult done(0, {}, {}, false);
  if (takesEffect(outcome)) done = world_.engine.carryOut(words, sampled);
  co_await sleepFor(world_.mainThread, whole - before, never);
  CommandResult result = told(outcome, std::move(done));
  learn(world_, words, result, asked, sampled);
  if (world_.journal.tell) {
    world_.journal.note(fmt::format("{} gives {} {:?}{}", fmt::join(words, " "), result.status,
                                    result.combined(), result.timedOut ? " (time-out)" : ""));
  }
  co_return result;
}

Task<std::int32_t> SimulatedStream::run(std::string, std::vector<std::string> args, Environment,
                                        LineCallback onLine) {
  Arrival<std::int32_t> ended;
  world_.processes.start(
      work(shared_from_this(), std::move(args), std::move(onLine), ended.state()));
  const std::int32_t status = co_await ended;
  co_return status;
}

void SimulatedStream::cancel() {
  if (std::exchange(deaf_, false)) --world_.journal.deafStreams;
  source_.cancel();
}

// The end arrives as a worker's answer does: after the lines that were handed over before.
Task<void> SimulatedStream::work(std::shared_ptr<SimulatedStream> self,
                                 std::vector<std::string> args, LineCallback onLine, Ended ended) {
  ended->value = cancelledBeforeStart;
  if (!source_.token().isCancelled()) {
    Journal& journal = world_.journal;
    const Journal::Underway tool(journal.runTools);
    const Journal::Underway stream(journal.streams);
    journal.mostRunTools = std::max(journal.mostRunTools, journal.runTools);
    if (args.front() != "start") ++journal.downloadsBegun;
    ++journal.deafStreams;
    deaf_ = true;
    const std::int32_t status = co_await self->talk(args, onLine);
    ended->value = status;
    if (std::exchange(deaf_, false)) --journal.deafStreams;
    if (journal.tell) journal.note(fmt::format("{} ends with {}", fmt::join(args, " "), status));
  }
  world_.mainThread.post([ended] { ended->arrive(); });
}

Task<std::int32_t> SimulatedStream::talk(std::vector<std::string> args, LineCallback onLine) {
  constexpr std::int32_t endedBySigterm = 143;
  enum class Way { works, fails, seemsToFail, seemsToWork, hangs, cannotStart };
  const Way way =
      world_.trouble()
          ? world_.dice.pick({Way::fails, Way::fails, Way::seemsToFail, Way::seemsToWork,
                              Way::hangs, Way::hangs, Way::cannotStart})
          : Way::works;
  if (way == Way::cannotStart) {
    write(args, onLine);
    co_return couldNotStart;
  }
  const CancellationToken token = source_.token();
  for (std::size_t lines = world_.dice.below(4); lines > 0 && !token.isCancelled(); --lines) {
    co_await pause(world_.drawDelay(10s));
    write(args, onLine);
  }
  co_await pause(way == Way::hangs ? Duration(1h) : world_.drawDelay(10s));
  if (token.isCancelled()) {
    // It tidies up first.
    CancellationToken never;
    const Duration tidying = world_.drawDelay(2s);
    co_await sleepFor(world_.mainThread, tidying, never);
    if (world_.dice.percent(50)) write(args, onLine);
    co_return endedBySigterm;
  }
  if (way == Way::works || way == Way::seemsToFail) takeEffect(args);
  if (world_.dice.percent(50)) write(args, onLine);
  co_return way == Way::works || way == Way::seemsToWork ? 0 : 1;
}

Task<void> SimulatedStream::pause(Duration duration) {
  CancellationToken token = source_.token();
  co_await sleepFor(world_.mainThread, duration, std::move(token));
}

void SimulatedStream::write(const std::vector<std::string>& args, const LineCallback& onLine) {
  auto& lines = world_.journal.lines;
  const std::size_t number = lines.size();
  lines.push_back(args.front() == "pull" ? fmt::format("{0:012x}: Download complete <{0}>", number)
                                         : fmt::format("<{}>", number));
  onLine(lines.back());
}

void SimulatedStream::takeEffect(const std::vector<std::string>& args) {
  EngineModel& engine = world_.engine;
  if (args.front() == "start") engine.colimaUp = true;
  if (args.front() == "pull") engine.images.insert(args[1]);
  if (args.front() == "install") engine.installed.insert(args.begin() + 1, args.end());
}

std::optional<int> SimulatedPage::status(const std::string& url, std::chrono::milliseconds) {
  const TimePoint now = world_.mainThread.now();
  const auto [sampled, page] = world_.oldPage.value_or(std::pair(now, world_.engine.page(now)));
  if (url != fmt::format("http://127.0.0.1:{}/", page.port)) return std::nullopt;
  if (page.status && *page.status < 500) world_.journal.sawPage(sampled);
  if (world_.journal.tell) world_.journal.note("the page is asked");
  return page.status;
}

void SimulatedWorkers::run(std::function<void()> work) {
  std::optional<std::pair<TimePoint, EngineModel::Page>> asked;
  const TimePoint now = world_.mainThread.now();
  if (world_.dice.percent(50)) asked.emplace(now, world_.engine.page(now));
  ++world_.journal.others;
  world_.mainThread.postAfter(world_.drawDelay(2s), [this, asked, work = std::move(work)] {
    world_.oldPage = asked;
    work();
    world_.oldPage.reset();
    // After the answer, which the job has just posted.
    world_.mainThread.post([&others = world_.journal.others] { --others; });
  });
}

}  // namespace tarnwick
