#include "ui/tray/status_icon.h"

#include <QPainter>
#include <QPixmap>

namespace tarnwick::StatusIcon {
namespace {

constexpr QSizeF size(20, 16);

// Bright enough for dark panels and dark enough for light ones: the tray does not tell its colour.
QColor fill(Phase phase) {
  switch (phase) {
    case Phase::busy:
      return QColor(0xff, 0x95, 0x00);
    case Phase::running:
      return QColor(0x34, 0xc7, 0x59);
    case Phase::idle:
      break;
  }
  return QColor(0x8e, 0x8e, 0x93);
}

}  // namespace

QImage image(Phase phase, qreal devicePixelRatio) {
  QImage image((size * devicePixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(devicePixelRatio);
  image.fill(Qt::transparent);

  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  // The figures below count from the bottom.
  painter.translate(0, size.height());
  painter.scale(1, -1);

  const QRectF screen(2, 4, 16, 11);
  constexpr qreal radius = 2;
  painter.setPen(Qt::NoPen);
  painter.setBrush(fill(phase));
  painter.drawRoundedRect(screen, radius, radius);
  painter.setPen(QPen(QColor::fromRgbF(0, 0, 0, 0.45F), 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(screen, radius, radius);
  painter.fillRect(QRectF(7, 1, 6, 2), fill(phase));
  return image;
}

QIcon icon(Phase phase) {
  QIcon icon;
  for (const qreal ratio : {1.0, 2.0}) icon.addPixmap(QPixmap::fromImage(image(phase, ratio)));
  return icon;
}

}  // namespace tarnwick::StatusIcon
