#pragma once

#include <QString>

#include "core/controller/desktop_controller.h"

namespace tarnwick {

// What the home screen shows, derived from the controller's present state.

/// The main button's title.
[[nodiscard]] QString primaryTitle(const DesktopController& controller);
/// A run is under way, or left something in the checklist.
[[nodiscard]] bool showsProgress(const DesktopController& controller);
/// What the first launch of the chosen flavor costs; empty when there is nothing to say.
[[nodiscard]] QString firstRunText(const DesktopController& controller);
/// That tools are missing; empty when they are not, or when nothing can be started anyway. Looks
/// for the tools at each call.
[[nodiscard]] QString installHint(const DesktopController& controller);

}  // namespace tarnwick
