#include "ui/home/flavor_picker.h"

#include <QAbstractItemView>
#include <QWheelEvent>
#include <algorithm>

#include "core/settings/flavor.h"

namespace tarnwick {

FlavorPicker::FlavorPicker(QWidget* parent) : QComboBox(parent) {
  for (const Flavor& flavor : Flavor::all()) {
    addItem(QString::fromStdString(flavor.pickerText()), QString::fromStdString(flavor.id));
  }
  setSizeAdjustPolicy(QComboBox::AdjustToContents);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setAccessibleName(QStringLiteral("Flavor"));
  view()->setAccessibleName(QStringLiteral("Flavors"));
}

QSize FlavorPicker::minimumSizeHint() const {
  // Narrower than its longest entry rather than wider than the card.
  const QSize hint = QComboBox::minimumSizeHint();
  return {std::min(hint.width(), fontMetrics().averageCharWidth() * 20), hint.height()};
}

void FlavorPicker::showFlavor(const std::string& id) {
  const int index = findData(QString::fromStdString(id));
  if (index != currentIndex()) setCurrentIndex(index);
}

std::string FlavorPicker::flavorAt(int index) const {
  return itemData(index).toString().toStdString();
}

void FlavorPicker::wheelEvent(QWheelEvent* event) {
  // The page scrolls under the pointer; that must not choose another flavor on the way.
  event->ignore();
}

}  // namespace tarnwick
