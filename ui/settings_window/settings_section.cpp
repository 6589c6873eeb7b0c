#include "ui/settings_window/settings_section.h"

#include <QEvent>
#include <QSignalBlocker>

namespace tarnwick {

SettingsSection::SettingsSection(const QString& title) : card_(new Card(12, ColorRole::card)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(6);
  column->addWidget(new TextLabel(title, FontRole::headline));
  card_->setAccessibleName(title);
  column->addWidget(card_);
  rows_ = new QVBoxLayout(card_);
  rows_->setContentsMargins(16, 14, 16, 14);
  rows_->setSpacing(10);
}

TextLabel* SettingsSection::addCaption(const QString& text) {
  auto* caption = new TextLabel(text, FontRole::caption, ColorRole::secondary);
  rows_->addWidget(caption);
  return caption;
}

void SettingsSection::showChecked(QCheckBox& box, bool on) {
  const QSignalBlocker quiet(box);
  box.setChecked(on);
}

bool SettingsSection::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  // Polished means that the rows are there, before they are first seen.
  const bool isDue =
      event->type() == QEvent::Polish || event->type() == QEvent::ApplicationPaletteChange;
  if (isDue) outlineControls(*card_);
  return handled;
}

}  // namespace tarnwick
