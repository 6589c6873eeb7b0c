#include "ui/common/font_changes.h"

#include <QEvent>
#include <QWidget>

namespace tarnwick {

FontChanges::FontChanges(QApplication& application) {
  application.installEventFilter(this);
}

bool FontChanges::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::ApplicationFontChange) return false;
  const auto* widget = qobject_cast<QWidget*>(watched);
  if (widget == nullptr || !widget->isWindow()) return false;
  const auto inner = widget->findChildren<QWidget*>();
  for (QWidget* each : inner) {
    if (each->isWindow()) continue;
    QEvent change(QEvent::ApplicationFontChange);
    QCoreApplication::sendEvent(each, &change);
  }
  return false;
}

}  // namespace tarnwick
