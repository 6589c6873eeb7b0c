#pragma once

#include <QWidget>

namespace tarnwick {

/// Full screen on or off for a window; nothing for null.
void toggleFullScreen(QWidget* window);

}  // namespace tarnwick
