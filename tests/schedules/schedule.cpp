#include "tests/schedules/schedule.h"

#include <fmt/format.h>

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

struct Choice {
  Act act;
  const char* name;
  std::size_t weight;
};

constexpr Choice choices[] = {
    {Act::pressMain, "press main button", 14},
    {Act::update, "update", 5},
    {Act::applySettings, "apply settings", 6},
    {Act::confirmInstall, "confirm install", 4},
    {Act::useSuggestedPorts, "use suggested ports", 3},
    {Act::startLaunch, "start launch", 4},
    {Act::cancel, "cancel", 9},
    {Act::stop, "stop", 10},
    {Act::restartColima, "restart colima", 5},
    {Act::removeFlavor, "remove flavor", 6},
    {Act::switchColimaAtLogin, "colima at login", 2},
    {Act::chooseFlavor, "choose flavor", 3},
    {Act::choosePorts, "choose ports", 3},
    {Act::switchPassword, "require password", 2},
    {Act::showHome, "show home", 2},
    {Act::reload, "reload", 1},
    {Act::dismissInstallOffer, "dismiss install offer", 1},
    {Act::dismissPortConflict, "dismiss port conflict", 1},
    {Act::containerStops, "(container stops)", 4},
    {Act::containerStarts, "(container starts)", 4},
    {Act::containerVanishes, "(container vanishes)", 3},
    {Act::colimaStops, "(colima stops)", 2},
    {Act::pageFallsIll, "(page falls ill)", 2},
    {Act::pageRecovers, "(page recovers)", 2},
    {Act::toolsVanish, "(tools vanish)", 1},
    {Act::toolsReturn, "(tools return)", 1},
    {Act::keychainLocks, "(keychain locks)", 1},
    {Act::keychainUnlocks, "(keychain unlocks)", 1},
    {Act::quit, "quit", 1},
};

constexpr std::size_t sumOfWeights() {
  std::size_t sum = 0;
  for (const Choice& choice : choices) sum += choice.weight;
  return sum;
}

Act drawAct(Dice& dice) {
  std::size_t rest = dice.below(sumOfWeights());
  for (const Choice& choice : choices) {
    if (rest < choice.weight) return choice.act;
    rest -= choice.weight;
  }
  return Act::quit;
}

}  // namespace

std::string Step::text() const {
  const Choice& known = choices[static_cast<std::size_t>(act)];
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(wait).count();
  const std::string after =
      turns ? fmt::format("{} turns", *turns) : fmt::format("{} ms", milliseconds);
  return fmt::format("after {}: {} ({})", after, known.name, choice);
}

std::vector<Step> drawSchedule(Dice& dice) {
  std::vector<Step> steps(5 + dice.below(11));
  for (Step& step : steps) {
    // Acts a few turns apart meet what is about to arrive; others find the long waits.
    if (dice.percent(40)) {
      step.turns = static_cast<int>(dice.below(12));
    } else {
      step.wait = dice.pick<Duration>({0ms, 1ms, 20ms, 300ms, 1s, 2s, 3s, 6s, 10s, 40s});
    }
    step.act = drawAct(dice);
    step.choice = dice.below(12);
  }
  return steps;
}

}  // namespace tarnwick
