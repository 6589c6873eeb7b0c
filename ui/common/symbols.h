#pragma once

#include <QIcon>
#include <QPainter>
#include <QRectF>
#include <optional>

#include "ui/common/theme.h"

namespace tarnwick {

/// The application's own symbols, drawn as shapes: right at every size, scale and theme.
enum class Symbol {
  circle,
  checkmarkCircleFill,
  xmarkCircleFill,
  exclamationmarkTriangleFill,
  arrowsOut,  ///< to the upper left and the lower right: full screen
  arrowClockwise,
  compass,
  docText,
  stopFill,
  house,
  keyboard,
};

/// Draws the symbol into the middle of `box`, as large as fits.
void drawSymbol(QPainter& painter, Symbol symbol, const QRectF& box, const QColor& color);

/// The symbol as an icon, in the colour of the role by the palette at the moment of painting, and
/// in the palette's disabled colour for disabled controls.
[[nodiscard]] QIcon symbolIcon(Symbol symbol, ColorRole color = ColorRole::primary);

}  // namespace tarnwick
