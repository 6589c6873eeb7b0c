#include "tests/schedules/scheduled_world.h"

#include <fmt/format.h>

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

// Few, so that a schedule meets the same one again.
const Flavor& chosenFlavor(std::size_t choice) {
  return Flavor::all()[choice % 3];
}

constexpr const char* phaseNames[] = {"idle", "busy", "running"};

}  // namespace

ScheduledWorld::ScheduledWorld(const ScheduleGround& ground, std::uint64_t seed,
                               Sightings& sightings)
    : dice_(seed), paths_(ground.folder, ground.folder), httpPort_(ground.httpPort) {
  furnish(ground);
  steps_ = drawSchedule(dice_);
  controller_.emplace(ControllerServices{
      mainThread_, workers_, runner_, engine_,
      [this] { return std::make_shared<SimulatedStream>(tools_); }, store_, secrets_, loginItem_,
      random_, page_, workspace_, paths_, "registry.test"});
  invariants_.emplace(*controller_, journal_, mainThread_, sightings);
}

void ScheduledWorld::furnish(const ScheduleGround& ground) {
  store_.values["httpPort"] = ground.httpPort;
  store_.values["httpsPort"] = ground.httpsPort;
  store_.values["flavor"] = chosenFlavor(dice_.below(3)).id;
  tools_.manners.troublePercent = dice_.pick<std::size_t>({0, 0, 8, 25});
  engine_.installed = {"docker", "colima", "brew"};
  if (dice_.percent(15)) engine_.installed.erase(dice_.pick({"docker", "colima"}));
  if (dice_.percent(5)) engine_.installed.erase("brew");
  engine_.hasCompose = dice_.percent(75);
  if (dice_.percent(20)) engine_.installed.insert("docker-compose");
  engine_.colimaUp = dice_.percent(60);
  engine_.bootTime = dice_.pick<Duration>({0s, 0s, 1s, 1s, 3s, 8s, 20s});
  if (dice_.percent(2)) engine_.bootTime = 300s;
  for (std::size_t flavor = 0; flavor < 3; ++flavor) {
    if (!dice_.percent(60)) continue;
    engine_.images.insert(imageReference("registry.test", chosenFlavor(flavor)));
  }
  monitored_ = dice_.percent(90);
  if (dice_.percent(50)) return;
  const Flavor& left = chosenFlavor(dice_.below(3));
  engine_.container.emplace();
  engine_.container->image = imageReference("registry.test", left);
  engine_.container->volume = left.volumeName();
  engine_.container->httpPort = ground.httpPort;
  if (dice_.percent(70)) engine_.container->composeFile = "of an earlier version";
  engine_.volumes.insert(left.volumeName());
  if (dice_.percent(60)) engine_.startContainer(mainThread_.now());
}

std::string ScheduledWorld::run() {
  if (monitored_) controller_->startMonitor();
  for (const Step& step : steps_) {
    if (!waitFor(step)) break;
    say(step.text());
    act(step);
    if (!controller_ || !look(step.act <= Act::startLaunch ? Invariants::After::actThatMayBeginARun
                                                           : Invariants::After::otherAct)) {
      break;
    }
  }
  if (controller_ && invariants_->broken().empty()) settle();
  return invariants_->broken();
}

bool ScheduledWorld::look(Invariants::After after) {
  const bool holds = invariants_->hold(after);
  if (journal_.tell) {
    const DesktopController& c = *controller_;
    std::string now = fmt::format("{}{}", phaseNames[static_cast<int>(c.phase.get())],
                                  c.isStopping.get() ? ", stopping" : "");
    if (!story_.ends_with("= " + now + "\n")) say("  = " + now);
  }
  return holds;
}

bool ScheduledWorld::waitFor(const Step& step) {
  if (!step.turns) return pass(step.wait);
  int turns = 0;
  bool holds = true;
  mainThread_.runUntil([&] {
    if (turns > 0) holds = look(Invariants::After::turn);
    return !holds || turns++ == *step.turns;
  });
  return holds;
}

bool ScheduledWorld::pass(Duration duration) {
  const TimePoint until = mainThread_.now() + duration;
  bool holds = true;
  mainThread_.runUntil(
      [&] {
        holds = look(Invariants::After::turn);
        return !holds;
      },
      duration);
  if (holds) mainThread_.advance(until - mainThread_.now());
  return holds;
}

void ScheduledWorld::act(const Step& step) {
  if (step.act >= Act::containerStops) {
    actAsMachine(step);
  } else {
    actAsUser(step);
  }
}

void ScheduledWorld::actAsUser(const Step& step) {
  DesktopController& c = *controller_;
  const bool odd = step.choice % 2 == 1;
  switch (step.act) {
    case Act::pressMain:
      return c.primary();
    case Act::update:
      return c.update();
    case Act::applySettings:
      return c.applySettings();
    case Act::confirmInstall:
      return c.confirmInstall();
    case Act::useSuggestedPorts:
      return c.useSuggestedPorts();
    case Act::startLaunch:
      return c.startLaunch(odd, step.choice % 3 == 0);
    case Act::cancel:
      c.cancel();
      return invariants_->cancelPressed();
    case Act::stop:
      c.stop();
      return invariants_->cancelPressed();
    case Act::restartColima:
      return c.restartColima();
    case Act::removeFlavor:
      return c.removeFlavor(chosenFlavor(step.choice));
    case Act::switchColimaAtLogin:
      return c.setColimaAtLogin(odd);
    case Act::chooseFlavor:
      c.settings.flavorID = chosenFlavor(step.choice).id;
      return;
    case Act::choosePorts:
      // 0 is a port that is never free.
      c.settings.httpPort = step.choice % 3 == 0 ? 0 : httpPort_;
      return;
    case Act::switchPassword:
      return c.settings.setRequirePassword(odd);
    case Act::showHome:
      return c.showHome();
    case Act::reload:
      return c.reloadDesktop();
    case Act::dismissInstallOffer:
      return c.dismissInstallOffer();
    default:
      return c.dismissPortConflict();
  }
}

void ScheduledWorld::actAsMachine(const Step& step) {
  switch (step.act) {
    case Act::containerStops:
      return engine_.stopContainer();
    case Act::containerStarts:
      return engine_.startContainer(mainThread_.now());
    case Act::containerVanishes:
      return engine_.container.reset();
    case Act::colimaStops:
      return engine_.stopColima();
    case Act::pageFallsIll:
    case Act::pageRecovers:
      engine_.pageIsIll = step.act == Act::pageFallsIll;
      return;
    case Act::toolsVanish:
      engine_.installed.erase(step.choice % 2 == 1 ? "docker" : "colima");
      return;
    case Act::toolsReturn:
      return engine_.installed.insert({"docker", "colima"});
    case Act::keychainLocks:
      return secrets_.refuse(SecretStatus::locked);
    case Act::keychainUnlocks:
      return secrets_.unlock();
    default:
      return quit();
  }
}

// Everything works from here on, and nobody does anything but end a tool that hangs.
void ScheduledWorld::settle() {
  tools_.manners = {0, true};
  engine_.pageIsIll = false;
  engine_.bootTime = 1s;
  const auto& c = *controller_;
  const auto quiet = [this, &c] {
    return c.phase.get() != Phase::busy && !c.isStopping.get() && journal_.endTools == 0;
  };
  const TimePoint giveUp = mainThread_.now() + 15min;
  if (engine_.container) engine_.container->answersFrom = mainThread_.now();
  // Looks that are under way run into their limits, and lead to what they lead to.
  if (!pass(15s)) return;
  while (!quiet() && mainThread_.now() < giveUp) {
    if (!pass(10s)) return;
    if (!quiet() && journal_.deafStreams > 0) actAsUser({{}, {}, Act::cancel, 0});
  }
  // The monitor's next look, after one of just now.
  if (pass(10s)) invariants_->settled(engine_, monitored_);
}

// What the tools still say and the workers still answer reaches nobody.
void ScheduledWorld::quit() {
  controller_.reset();
  mainThread_.advance(15s);
}

void ScheduledWorld::listen() {
  journal_.tell = [this](const std::string& event) { say("    " + event); };
}

void ScheduledWorld::say(const std::string& event) {
  if (!journal_.tell) return;
  const auto now = std::chrono::duration<double>(mainThread_.now().time_since_epoch()).count();
  story_ += fmt::format("{:9.3f} s  {}\n", now, event);
}

}  // namespace tarnwick
