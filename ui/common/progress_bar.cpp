#include "ui/common/progress_bar.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "ui/common/theme.h"

namespace tarnwick {
namespace {

constexpr int thickness = 6;
constexpr int stepMilliseconds = 33;
constexpr int stepsPerSweep = 54;

}  // namespace

ProgressBar::ProgressBar(QWidget* parent) : QProgressBar(parent) {
  setTextVisible(false);
  setRange(0, 0);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  timer_.setInterval(stepMilliseconds);
  QObject::connect(&timer_, &QTimer::timeout, this, [this] {
    step_ = (step_ + 1) % stepsPerSweep;
    update();
  });
}

void ProgressBar::setFraction(std::optional<double> fraction) {
  if (fraction) fraction = std::clamp(*fraction, 0.0, 1.0);
  if (fraction == fraction_) return;
  fraction_ = fraction;
  if (fraction_) {
    setRange(0, 100);
    setValue(static_cast<int>(std::lround(*fraction_ * 100)));
  } else {
    setRange(0, 0);
  }
  animate();
  update();
}

QSize ProgressBar::sizeHint() const {
  return {240, thickness + 4};
}

QSize ProgressBar::minimumSizeHint() const {
  return {60, thickness + 4};
}

void ProgressBar::animate() {
  if (isVisible() && !fraction_) {
    if (!timer_.isActive()) timer_.start();
  } else {
    timer_.stop();
  }
}

void ProgressBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const QRectF track(0, (height() - thickness) / 2.0, width(), thickness);
  const double radius = thickness / 2.0;
  painter.setBrush(colorFor(ColorRole::track, palette()));
  painter.drawRoundedRect(track, radius, radius);
  QPainterPath inside;
  inside.addRoundedRect(track, radius, radius);
  painter.setClipPath(inside);
  painter.setBrush(colorFor(ColorRole::accent, palette()));
  QRectF filled = track;
  if (fraction_) {
    filled.setWidth(track.width() * *fraction_);
    if (layoutDirection() == Qt::RightToLeft) filled.moveRight(track.right());
  } else {
    // A segment that enters on one side and leaves on the other.
    filled.setWidth(track.width() * 0.3);
    filled.moveLeft(track.width() * (1.3 * step_ / stepsPerSweep - 0.3));
  }
  painter.drawRoundedRect(filled, radius, radius);
}

void ProgressBar::showEvent(QShowEvent* event) {
  QProgressBar::showEvent(event);
  animate();
}

void ProgressBar::hideEvent(QHideEvent* event) {
  QProgressBar::hideEvent(event);
  animate();
}

}  // namespace tarnwick
