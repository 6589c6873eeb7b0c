#include "ui/common/spinner.h"

#include <QPainter>
#include <algorithm>

#include "ui/common/theme.h"

namespace tarnwick {
namespace {

constexpr int spokes = 8;
constexpr int stepMilliseconds = 100;

}  // namespace

Spinner::Spinner(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  timer_.setInterval(stepMilliseconds);
  QObject::connect(&timer_, &QTimer::timeout, this, [this] {
    step_ = (step_ + 1) % spokes;
    update();
  });
}

QSize Spinner::sizeHint() const {
  const int side = fontMetrics().height();
  return {side, side};
}

void Spinner::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double side = std::min(width(), height());
  painter.translate(QRectF(rect()).center());
  QColor color = colorFor(ColorRole::primary, palette());
  for (int spoke = 0; spoke < spokes; ++spoke) {
    const int age = (step_ - spoke + spokes) % spokes;
    color.setAlphaF(static_cast<float>(0.85 - 0.65 * age / (spokes - 1)));
    painter.setPen(QPen(color, side * 0.11, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(0, -side * 0.23), QPointF(0, -side * 0.41));
    painter.rotate(360.0 / spokes);
  }
}

void Spinner::showEvent(QShowEvent*) {
  timer_.start();
}

void Spinner::hideEvent(QHideEvent*) {
  timer_.stop();
}

}  // namespace tarnwick
