#include "core/controller/launch_state.h"

namespace tarnwick {

std::vector<Stage> initialStages() {
  return {{0, "Colima ready", StageState::pending},
          {1, "Image downloaded", StageState::pending},
          {2, "Desktop starting", StageState::pending},
          {3, "Ready", StageState::pending}};
}

}  // namespace tarnwick
