#include "ui/common/announcer.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace tarnwick {
namespace {

QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
  auto* announcer = dynamic_cast<Announcer*>(object);
  return announcer ? new QAccessibleWidget(announcer, QAccessible::AlertMessage) : nullptr;
}

void notify(QWidget* widget, QAccessible::Event type) {
  QAccessibleEvent event(widget, type);
  QAccessible::updateAccessibility(&event);
}

}  // namespace

Announcer::Announcer(QWidget* parent) : QWidget(parent) {
  static const bool installed = (QAccessible::installFactory(&makeAccessible), true);
  static_cast<void>(installed);
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
