#include "ui/common/symbols.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainterPath>
#include <QPixmap>
#include <algorithm>

#include "ui/common/shapes.h"

namespace tarnwick {
namespace {

// All symbols are drawn on a square of 24 units with lines of one width and round ends.
constexpr double side = 24;
constexpr double line = 1.8;

class Pencil {
 public:
  Pencil(QPainter& painter, const QColor& color) : painter_(painter), color_(color) {}

  void stroke(const QPainterPath& path) {
    painter_.setPen(QPen(color_, line, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawPath(path);
  }

  void fill(const QPainterPath& path) {
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(color_);
    painter_.drawPath(path);
  }

 private:
  QPainter& painter_;
  QColor color_;
};

QPainterPath polyline(std::initializer_list<QPointF> points) {
  QPainterPath path(*points.begin());
  for (const QPointF& point : points) path.lineTo(point);
  return path;
}

QPainterPath disc(double radius) {
  QPainterPath path;
  path.addEllipse(QPointF(12, 12), radius, radius);
  return path;
}

/// The outline of a thick line, to be cut out of a filled shape.
QPainterPath thick(const QPainterPath& path, double width) {
  QPainterPathStroker stroker(QPen(Qt::black, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  return stroker.createStroke(path);
}

void drawTriangle(Pencil& pencil) {
  const QPainterPath corners = polyline({{12, 4.2}, {21.2, 19.6}, {2.8, 19.6}, {12, 4.2}});
  QPainterPath body = corners.united(thick(corners, 2.4));
  QPainterPath dot;
  dot.addEllipse(QPointF(12, 17), 1.25, 1.25);
  body = body.subtracted(thick(polyline({{12, 9.4}, {12, 13.6}}), 2.0)).subtracted(dot);
  pencil.fill(body);
}

void drawArrowsOut(Pencil& pencil) {
  pencil.stroke(polyline({{10.2, 10.2}, {4, 4}}));
  pencil.stroke(polyline({{4, 9.6}, {4, 4}, {9.6, 4}}));
  pencil.stroke(polyline({{13.8, 13.8}, {20, 20}}));
  pencil.stroke(polyline({{20, 14.4}, {20, 20}, {14.4, 20}}));
}

void drawArrowClockwise(Pencil& pencil) {
  QPainterPath arc;
  const QRectF box(4, 4, 16, 16);
  arc.arcMoveTo(box, 20);
  arc.arcTo(box, 20, 310);
  pencil.stroke(arc);
  pencil.stroke(polyline({{20.2, 4.4}, {19.8, 9.4}, {14.8, 9.0}}));
}

void drawCompass(Pencil& pencil) {
  pencil.stroke(disc(9.2));
  QPainterPath needle = polyline({{16.6, 7.4}, {13.6, 13.6}, {7.4, 16.6}, {10.4, 10.4}});
  needle.closeSubpath();
  QPainterPath hub;
  hub.addEllipse(QPointF(12, 12), 1.2, 1.2);
  pencil.fill(needle.subtracted(hub));
}

void drawDocument(Pencil& pencil) {
  QPainterPath page = polyline({{14, 2.8}, {6.4, 2.8}});
  page.quadTo(4.8, 2.8, 4.8, 4.4);
  page.lineTo(4.8, 19.6);
  page.quadTo(4.8, 21.2, 6.4, 21.2);
  page.lineTo(17.6, 21.2);
  page.quadTo(19.2, 21.2, 19.2, 19.6);
  page.lineTo(19.2, 8);
  page.closeSubpath();
  pencil.stroke(page);
  pencil.stroke(polyline({{14, 2.8}, {14, 8}, {19.2, 8}}));
  pencil.stroke(polyline({{8.4, 12.6}, {15.6, 12.6}}));
  pencil.stroke(polyline({{8.4, 16.8}, {15.6, 16.8}}));
}

void drawHouse(Pencil& pencil) {
  pencil.stroke(polyline({{2.8, 11.8}, {12, 3.6}, {21.2, 11.8}}));
  pencil.stroke(polyline({{5.2, 9.8}, {5.2, 20.4}, {18.8, 20.4}, {18.8, 9.8}}));
  pencil.stroke(polyline({{9.8, 20.2}, {9.8, 14.2}, {14.2, 14.2}, {14.2, 20.2}}));
}

void drawKeyboard(Pencil& pencil) {
  pencil.stroke(continuousRectangle(QRectF(2, 5.6, 20, 12.8), 2.4));
  QPainterPath keys;
  for (const double x : {5.6, 8.8, 12.0, 15.2, 18.4}) keys.addEllipse(QPointF(x, 9.4), 1, 1);
  for (const double x : {7.2, 10.4, 13.6, 16.8}) keys.addEllipse(QPointF(x, 12.3), 1, 1);
  pencil.fill(keys);
  pencil.stroke(polyline({{8.4, 15.4}, {15.6, 15.4}}));
}

void drawShapes(Pencil& pencil, Symbol symbol) {
  switch (symbol) {
    case Symbol::circle:
      return pencil.stroke(disc(9.2));
    case Symbol::checkmarkCircleFill:
      return pencil.fill(
          disc(10.2).subtracted(thick(polyline({{7.4, 12.4}, {10.6, 15.8}, {16.6, 8.4}}), 2.1)));
    case Symbol::xmarkCircleFill:
      return pencil.fill(disc(10.2)
                             .subtracted(thick(polyline({{8.2, 8.2}, {15.8, 15.8}}), 2.1))
                             .subtracted(thick(polyline({{15.8, 8.2}, {8.2, 15.8}}), 2.1)));
    case Symbol::exclamationmarkTriangleFill:
      return drawTriangle(pencil);
    case Symbol::arrowsOut:
      return drawArrowsOut(pencil);
    case Symbol::arrowClockwise:
      return drawArrowClockwise(pencil);
    case Symbol::compass:
      return drawCompass(pencil);
    case Symbol::docText:
      return drawDocument(pencil);
    case Symbol::stopFill:
      return pencil.fill(continuousRectangle(QRectF(4.6, 4.6, 14.8, 14.8), 3));
    case Symbol::house:
      return drawHouse(pencil);
    case Symbol::keyboard:
      return drawKeyboard(pencil);
  }
}

class SymbolEngine final : public QIconEngine {
 public:
  SymbolEngine(Symbol symbol, ColorRole color) : symbol_(symbol), color_(color) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const QPalette palette = QGuiApplication::palette();
    const QColor color = mode == QIcon::Disabled
                             ? palette.color(QPalette::Disabled, QPalette::WindowText)
                             : colorFor(color_, palette);
    drawSymbol(*painter, symbol_, rect, color);
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return pixmap;
  }

  [[nodiscard]] QIconEngine* clone() const override { return new SymbolEngine(*this); }

 private:
  Symbol symbol_;
  ColorRole color_;
};

}  // namespace

void drawSymbol(QPainter& painter, Symbol symbol, const QRectF& box, const QColor& color) {
  const double edge = std::min(box.width(), box.height());
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(box.center() - QPointF(edge / 2, edge / 2));
  painter.scale(edge / side, edge / side);
  Pencil pencil(painter, color);
  drawShapes(pencil, symbol);
  painter.restore();
}

QIcon symbolIcon(Symbol symbol, ColorRole color) {
  return QIcon(new SymbolEngine(symbol, color));
}

}  // namespace tarnwick
