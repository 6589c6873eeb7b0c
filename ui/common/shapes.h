#pragma once

#include <QPainterPath>
#include <QRectF>

namespace tarnwick {

/// A rectangle whose corners bend gradually, reaching as far inwards as a circle of `radius` does.
[[nodiscard]] QPainterPath continuousRectangle(const QRectF& rectangle, double radius);

}  // namespace tarnwick
