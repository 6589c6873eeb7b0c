#pragma once

#include "core/controller/desktop_controller.h"

namespace tarnwick {

/// Whether controls that rebuild the machine or the container may be used: not during a launch or
/// an installation, and not without docker and colima.
[[nodiscard]] inline bool allowsMaintenance(const DesktopController& controller) {
  return controller.phase.get() != Phase::busy && controller.toolsInstalled();
}

}  // namespace tarnwick
