#pragma once

#include <QAccessible>
#include <QWidget>

namespace tarnwick {

/// Tells assistive tools what a widget that we paint ourselves is. Its name is the widget's
/// accessible name. For widgets that derive from QWidget directly.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

}  // namespace tarnwick
