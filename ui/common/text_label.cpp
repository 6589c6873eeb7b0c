#include "ui/common/text_label.h"

#include <QApplication>

namespace tarnwick {

TextLabel::TextLabel(FontRole font, ColorRole color, QWidget* parent)
    : QLabel(parent), fontRole_(font), colorRole_(color) {
  // Much of what is shown comes from tools; none of it is markup.
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  applyTheme();
}

TextLabel::TextLabel(const QString& text, FontRole font, ColorRole color, QWidget* parent)
    : TextLabel(font, color, parent) {
  setText(text);
}

void TextLabel::setColorRole(ColorRole color) {
  if (color == colorRole_) return;
  colorRole_ = color;
  applyTheme();
}

void TextLabel::setSemibold() {
  semibold_ = true;
  applyTheme();
}

bool TextLabel::event(QEvent* event) {
  const bool handled = QLabel::event(event);
  if (changesTheme(*event)) applyTheme();
  return handled;
}

void TextLabel::applyTheme() {
  // Setting either one announces a change again; setting the same is where that ends.
  QFont wanted = fontFor(fontRole_);
  if (semibold_) wanted.setWeight(QFont::DemiBold);
  if (font() != wanted) setFont(wanted);
  const QColor color = colorFor(colorRole_, QApplication::palette());
  if (palette().color(QPalette::WindowText) != color) {
    QPalette changed = QApplication::palette();
    changed.setColor(QPalette::WindowText, color);
    setPalette(changed);
  }
}

}  // namespace tarnwick
