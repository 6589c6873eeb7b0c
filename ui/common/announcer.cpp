#include "ui/common/announcer.h"

#include <QAccessible>

#include "ui/common/accessible_role.h"

namespace tarnwick {
namespace {

void notify(QWidget* widget, QAccessible::Event type) {
  QAccessibleEvent event(widget, type);
  QAccessible::updateAccessibility(&event);
}

}  // namespace

Announcer::Announcer(QWidget* parent) : QWidget(parent) {
  setAccessibleRole(*this, QAccessible::AlertMessage);
  setFixedSize(1, 1);
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void Announcer::announce(const QString& sentence) {
  if (sentence == latest()) return;
  // Sets the name and tells of its change.
  setAccessibleName(sentence);
  // Alerts are read when they appear; this one is always there and says that it does once more.
  if (!sentence.isEmpty() && QAccessible::isActive()) notify(this, QAccessible::ObjectShow);
}

}  // namespace tarnwick
