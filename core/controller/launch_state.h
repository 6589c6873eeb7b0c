#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick {

enum class Phase {
  idle,     ///< nothing runs; the main button starts or installs
  busy,     ///< a launch or an installation is under way
  running,  ///< the desktop's container answers
};

enum class StageState { pending, active, done, failed };

/// One row of the launch checklist.
struct Stage {
  std::int64_t id;  ///< the row's identity and its index
  std::string title;
  StageState state;

  bool operator==(const Stage&) const = default;
};

/// The checklist before a launch: four pending rows.
[[nodiscard]] std::vector<Stage> initialStages();

/// A port that the desktop needs and another program holds.
struct PortConflict {
  std::string id;  ///< a new UUID for each conflict
  std::int64_t port;
  std::string holder;  ///< who holds it, as the look-up told
  std::int64_t suggestedHTTP;
  std::int64_t suggestedHTTPS;
};

}  // namespace tarnwick
