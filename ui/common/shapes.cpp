#include "ui/common/shapes.h"

#include <algorithm>

namespace tarnwick {

QPainterPath continuousRectangle(const QRectF& rectangle, double radius) {
  // One cubic a corner. It begins earlier than a circle's arc would (reach > radius), and its
  // handles are chosen so that its middle lies where the middle of that arc lies: 0.293 radius from
  // both edges, and a cubic's middle is (1 + 3 handle) / 8 of the reach.
  const double shortest = std::min(rectangle.width(), rectangle.height());
  const double reach = std::min(radius * 1.3, shortest / 2);
  const double handle = reach <= 0 ? 0 : std::max(0.0, (8 * 0.293 * radius / reach - 1) / 3);
  const double near = reach * handle;
  const double left = rectangle.left();
  const double top = rectangle.top();
  const double right = rectangle.right();
  const double bottom = rectangle.bottom();
  QPainterPath path;
  path.moveTo(left + reach, top);
  path.lineTo(right - reach, top);
  path.cubicTo(right - near, top, right, top + near, right, top + reach);
  path.lineTo(right, bottom - reach);
  path.cubicTo(right, bottom - near, right - near, bottom, right - reach, bottom);
  path.lineTo(left + reach, bottom);
  path.cubicTo(left + near, bottom, left, bottom - near, left, bottom - reach);
  path.lineTo(left, top + reach);
  path.cubicTo(left, top + near, left + near, top, left + reach, top);
  path.closeSubpath();
  return path;
}

}  // namespace tarnwick
