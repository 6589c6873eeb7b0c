#include "ui/desktop/full_screen.h"

namespace tarnwick {

void toggleFullScreen(QWidget* window) {
  // The state beneath (maximised or not) stays, and comes back when full screen ends.
  if (window) window->setWindowState(window->windowState() ^ Qt::WindowFullScreen);
}

}  // namespace tarnwick
