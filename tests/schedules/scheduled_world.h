#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/controller/desktop_controller.h"
#include "tests/schedules/invariants.h"
#include "tests/schedules/schedule.h"
#include "tests/schedules/simulated_tools.h"
#include "tests/support/counting_random_source.h"
#include "tests/support/memory_key_value_store.h"
#include "tests/support/memory_login_item.h"
#include "tests/support/memory_secret_service.h"
#include "tests/support/recording_workspace.h"
#include "tests/support/virtual_main_thread.h"

namespace tarnwick {

/// What does not change from one schedule to the next.
struct ScheduleGround {
  std::string folder;  ///< for the compose files
  std::int64_t httpPort = 0;
  std::int64_t httpsPort = 0;
};

/// A controller in a machine of its own; both, and all that happens, follow from the seed.
class ScheduledWorld {
 public:
  ScheduledWorld(const ScheduleGround& ground, std::uint64_t seed, Sightings& sightings);

  /// Goes through the schedule and lets time run until all is quiet. Gives the first invariant
  /// that was broken, or an empty text.
  std::string run();

  /// From here on every event is kept, for `story`.
  void listen();
  [[nodiscard]] const std::string& story() const { return story_; }

 private:
  void furnish(const ScheduleGround& ground);
  bool waitFor(const Step& step);
  bool pass(Duration duration);
  bool look(Invariants::After after);
  void act(const Step& step);
  void actAsUser(const Step& step);
  void actAsMachine(const Step& step);
  void settle();
  void quit();
  void say(const std::string& event);

  Dice dice_;
  VirtualMainThread mainThread_;
  EngineModel engine_;
  Journal journal_;
  TaskScope processes_{mainThread_};
  ToolWorld tools_{mainThread_, engine_, journal_, dice_, processes_};
  SimulatedRunner runner_{tools_};
  SimulatedWorkers workers_{tools_};
  SimulatedPage page_{tools_};
  MemoryKeyValueStore store_;
  MemorySecretService secrets_;
  MemoryLoginItem loginItem_;
  CountingRandomSource random_;
  RecordingWorkspace workspace_;
  AppPaths paths_;
  std::int64_t httpPort_;
  bool monitored_ = true;
  std::vector<Step> steps_;
  std::string story_;
  std::optional<DesktopController> controller_;
  std::optional<Invariants> invariants_;
};

}  // namespace tarnwick
