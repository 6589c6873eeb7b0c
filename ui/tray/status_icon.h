#pragma once

#include <QIcon>
#include <QImage>

#include "core/controller/launch_state.h"

namespace tarnwick::StatusIcon {

/// The small coloured monitor that tells the phase: 20 × 16 points, transparent around it.
/// `devicePixelRatio` is the number of pixels to a point.
[[nodiscard]] QImage image(Phase phase, qreal devicePixelRatio = 1);

/// The same drawing for plain and for doubled pixels.
[[nodiscard]] QIcon icon(Phase phase);

}  // namespace tarnwick::StatusIcon
