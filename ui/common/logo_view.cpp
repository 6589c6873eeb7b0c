#include "ui/common/logo_view.h"

#include <QFontDatabase>
#include <QLinearGradient>
#include <QPainterPath>
#include <QPixmap>

#include "ui/common/accessible_role.h"
#include "ui/common/shapes.h"

namespace tarnwick {
namespace {

QLinearGradient background(double size) {
  QLinearGradient gradient(0, 0, size, size);
  gradient.setColorAt(0, QColor::fromRgbF(0.25F, 0.55F, 1.0F));
  gradient.setColorAt(1, QColor::fromRgbF(0.08F, 0.20F, 0.70F));
  return gradient;
}

/// What of an outline lies in a rectangle. Not a clip, which the drawing as an SVG file would lose.
QPainterPath within(const QPainterPath& outline, const QRectF& rectangle) {
  QPainterPath path;
  path.addRect(rectangle);
  return outline.intersected(path);
}

/// A shadow without an image effect: rings whose opacity adds up from the blur's edge inwards.
void drawShadow(QPainter& painter, const QRectF& window, double size) {
  constexpr int rings = 8;
  constexpr double opacity = 0.30;
  const double blur = 0.04 * size;
  QColor black(Qt::black);
  black.setAlphaF(static_cast<float>(opacity / rings));
  for (int ring = 0; ring < rings; ++ring) {
    const double grow = blur * (1 - 2.0 * ring / (rings - 1));
    const QRectF outline = window.translated(0, 0.02 * size).adjusted(-grow, -grow, grow, grow);
    painter.fillPath(continuousRectangle(outline, 0.06 * size + grow / 2), black);
  }
}

void drawTitleBar(QPainter& painter, const QPainterPath& outline, const QRectF& bar, double size) {
  painter.fillPath(within(outline, bar), QColor::fromRgbF(1, 1, 1, 0.35F));
  const double dot = 0.06 * size;
  double left = bar.left() + 0.06 * size;
  for (QColor color : {QColor(255, 59, 48), QColor(255, 204, 0), QColor(52, 199, 89)}) {
    color.setAlphaF(0.85F);
    painter.setBrush(color);
    painter.drawEllipse(QRectF(left, bar.center().y() - dot / 2, dot, dot));
    left += dot + 0.04 * size;
  }
}

void drawTerminal(QPainter& painter, const QPainterPath& outline, const QRectF& body, double size) {
  painter.fillPath(within(outline, body), QColor::fromRgbF(0, 0, 0, 0.78F));
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setBold(true);
  // Outlines instead of text: the prompt keeps its place at fractional sizes and scales.
  font.setPixelSize(100);
  QPainterPath prompt;
  prompt.addText(0, QFontMetricsF(font).ascent(), font, QStringLiteral(">_"));
  painter.save();
  painter.translate(body.topLeft() + QPointF(0.05 * size, 0.05 * size));
  painter.scale(0.2 * size / 100, 0.2 * size / 100);
  painter.fillPath(prompt, QColor(52, 199, 89));
  painter.restore();
}

}  // namespace

void drawLogo(QPainter& painter, double size) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.fillPath(continuousRectangle(QRectF(0, 0, size, size), 0.23 * size), background(size));
  const QRectF window(0.17 * size, 0.25 * size, 0.66 * size, 0.5 * size);
  drawShadow(painter, window, size);
  const QPainterPath outline = continuousRectangle(window, 0.06 * size);
  // The shadow lies under the whole window, whose own surfaces are translucent: start afresh.
  painter.fillPath(outline, background(size));
  QRectF bar = window;
  bar.setHeight(0.16 * size);
  drawTitleBar(painter, outline, bar, size);
  drawTerminal(painter, outline, window.adjusted(0, bar.height(), 0, 0), size);
  painter.restore();
}

QIcon logoIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    drawLogo(painter, size);
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

LogoView::LogoView(int size, QWidget* parent) : QWidget(parent) {
  setFixedSize(size, size);
  setAccessibleRole(*this, QAccessible::Graphic);
  setAccessibleName(QStringLiteral("Tarnwick logo"));
}

void LogoView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  drawLogo(painter, width());
}

}  // namespace tarnwick
