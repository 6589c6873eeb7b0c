#include "ui/common/elided_label.h"

#include <QPainter>

#include "ui/common/accessible_role.h"

namespace tarnwick {
ElidedLabel::ElidedLabel(FontRole font, ColorRole color, QWidget* parent)
    : QWidget(parent), fontRole_(font), colorRole_(color) {
  setAccessibleRole(*this, QAccessible::StaticText);
  setFont(fontFor(fontRole_));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ElidedLabel::setText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  setAccessibleName(text);
  updateGeometry();
  update();
}

QString ElidedLabel::shownText() const {
  return fontMetrics().elidedText(text_, Qt::ElideMiddle, contentsRect().width());
}

QSize ElidedLabel::sizeHint() const {
  return {fontMetrics().horizontalAdvance(text_), fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
  return {fontMetrics().horizontalAdvance(QStringLiteral("mmm…mmm")), fontMetrics().height()};
}

bool ElidedLabel::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  if (changesTheme(*event)) {
    const QFont wanted = fontFor(fontRole_);
    if (font() != wanted) setFont(wanted);
    update();
  }
  return handled;
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(colorFor(colorRole_, palette()));
  painter.drawText(contentsRect(), Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine,
                   shownText());
}

}  // namespace tarnwick
