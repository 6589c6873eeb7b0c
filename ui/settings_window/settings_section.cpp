#include "ui/settings_window/settings_section.h"

#include <QApplication>

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
  applyTheme();
}

TextLabel* SettingsSection::addCaption(const QString& text) {
  auto* caption = new TextLabel(text, FontRole::caption, ColorRole::secondary);
  rows_->addWidget(caption);
  return caption;
}

bool SettingsSection::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  if (event->type() == QEvent::ApplicationPaletteChange) applyTheme();
  return handled;
}

void SettingsSection::applyTheme() {
  QPalette changed = card_->palette();
  changed.setColor(QPalette::Window,
                   controlPalette(QApplication::palette()).color(QPalette::Window));
  card_->setPalette(changed);
}

}  // namespace tarnwick
