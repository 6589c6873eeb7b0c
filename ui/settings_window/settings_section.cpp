#include "ui/settings_window/settings_section.h"

#include "ui/common/card.h"

namespace tarnwick {

SettingsSection::SettingsSection(const QString& title) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(6);
  column->addWidget(new TextLabel(title, FontRole::headline));
  auto* card = new Card(12, ColorRole::card);
  card->setAccessibleName(title);
  column->addWidget(card);
  rows_ = new QVBoxLayout(card);
  rows_->setContentsMargins(16, 14, 16, 14);
  rows_->setSpacing(10);
}

TextLabel* SettingsSection::addCaption(const QString& text) {
  auto* caption = new TextLabel(text, FontRole::caption, ColorRole::secondary);
  rows_->addWidget(caption);
  return caption;
}

}  // namespace tarnwick
