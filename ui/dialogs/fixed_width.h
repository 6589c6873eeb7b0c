#pragma once

#include <QWidget>

namespace tarnwick {

/// Fixes the width of a widget with a layout, and its height to what the layout needs at that
/// width. To be called again when the layout asks for another size.
void fitHeight(QWidget& widget, int width);

}  // namespace tarnwick
