#include "ui/common/card.h"

#include <QPainter>

#include "ui/common/shapes.h"

namespace tarnwick {

Card::Card(double radius, ColorRole fill, QWidget* parent)
    : QWidget(parent), radius_(radius), fill_(fill) {}

void Card::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF inner = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setBrush(colorFor(fill_, palette()));
  if (fill_ == ColorRole::card) {
    painter.setPen(QPen(colorFor(ColorRole::cardEdge, palette()), 1));
  } else {
    painter.setPen(Qt::NoPen);
  }
  painter.drawPath(continuousRectangle(inner, radius_));
}

}  // namespace tarnwick
