#include "ui/common/accessible_role.h"

#include <QAccessibleWidget>
#include <QVariant>

namespace tarnwick {
namespace {

constexpr const char* roleProperty = "accessibleRole";

QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
  if (!object || !object->isWidgetType()) return nullptr;
  const QVariant role = object->property(roleProperty);
  if (!role.isValid()) return nullptr;
  return new QAccessibleWidget(static_cast<QWidget*>(object),
                               static_cast<QAccessible::Role>(role.toInt()));
}

}  // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
  static const bool installed = (QAccessible::installFactory(&makeAccessible), true);
  static_cast<void>(installed);
  widget.setProperty(roleProperty, static_cast<int>(role));
}

}  // namespace tarnwick
