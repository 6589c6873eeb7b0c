#include "ui/tray/tray.h"

#include <QApplication>
#include <algorithm>
#include <utility>

namespace tarnwick {

Tray::Tray(DesktopController& controller, WindowOpener& windows, std::function<bool()> hasWindow,
           std::chrono::milliseconds patience)
    : controller_(controller), windows_(windows), hasWindow_(std::move(hasWindow)) {
  patience_.setSingleShot(true);
  patience_.setInterval(patience);
  QObject::connect(&patience_, &QTimer::timeout, &patience_, [this] {
    // Whoever has no window and no tray item could never be reached.
    if (!hasWindow_()) windows_.openWindow(mainWindowId);
  });
  patience_.start();
}

void Tray::hostChanged(bool there) {
  if (!there) {
    patience_.start();
    return;
  }
  patience_.stop();
  // The toolkit decides with the first item whether there is a tray at all, and registers the item
  // once more by itself when another host follows the first one.
  if (item_) return;
  item_.emplace(controller_, windows_);
  item_->show();
}

bool hasWindowOnShow() {
  const QWidgetList widgets = QApplication::topLevelWidgets();
  return std::ranges::any_of(widgets, [](const QWidget* widget) {
    const Qt::WindowType type = widget->windowType();
    return widget->isVisible() && (type == Qt::Window || type == Qt::Dialog) &&
           !widget->windowFlags().testFlag(Qt::BypassWindowManagerHint);
  });
}

}  // namespace tarnwick
