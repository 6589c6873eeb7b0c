#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/async/main_thread.h"
#include "tests/schedules/dice.h"

namespace tarnwick {

/// What the user does, or what happens to the machine meanwhile.
enum class Act {
  // Those that may begin a run come first.
  pressMain,
  update,
  applySettings,
  confirmInstall,
  useSuggestedPorts,
  startLaunch,
  cancel,
  stop,
  restartColima,
  removeFlavor,
  switchColimaAtLogin,
  chooseFlavor,
  choosePorts,
  switchPassword,
  showHome,
  reload,
  dismissInstallOffer,
  dismissPortConflict,
  // From here on nobody told the controller.
  containerStops,
  containerStarts,
  containerVanishes,
  colimaStops,
  pageFallsIll,
  pageRecovers,
  toolsVanish,
  toolsReturn,
  keychainLocks,
  keychainUnlocks,
  quit,
};

/// One act, after a while of virtual time or after so many turns of the main thread.
struct Step {
  Duration wait{};
  std::optional<int> turns;  ///< in place of `wait`
  Act act = Act::pressMain;
  std::size_t choice = 0;  ///< which flavor, which ports, on or off

  [[nodiscard]] std::string text() const;
};

/// 5 to 15 steps.
[[nodiscard]] std::vector<Step> drawSchedule(Dice& dice);

}  // namespace tarnwick
