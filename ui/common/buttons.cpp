#include "ui/common/buttons.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <algorithm>

#include "ui/common/shapes.h"
#include "ui/common/theme.h"

namespace tarnwick {
namespace {

QFont prominentFont() {
  QFont font = fontFor(FontRole::title2);
  font.setWeight(QFont::DemiBold);
  return font;
}

void drawHover(QPainter& painter, const QAbstractButton& button, double radius) {
  if (!button.isEnabled() || !(button.underMouse() || button.isDown())) return;
  QColor shade = colorFor(ColorRole::primary, button.palette());
  shade.setAlphaF(button.isDown() ? 0.16F : 0.08F);
  painter.fillPath(continuousRectangle(button.rect(), radius), shade);
}

QColor titleColor(const QAbstractButton& button, ColorRole role) {
  return button.isEnabled() ? colorFor(role, button.palette())
                            : button.palette().color(QPalette::Disabled, QPalette::ButtonText);
}

}  // namespace

void drawFocusRing(QPainter& painter, const QRectF& around, double radius,
                   const QPalette& palette) {
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(colorFor(ColorRole::link, palette), 2));
  painter.drawPath(continuousRectangle(around.adjusted(1, 1, -1, -1), radius));
}

ProminentButton::ProminentButton(const QString& title, QWidget* parent)
    : QPushButton(title, parent) {
  setFont(prominentFont());
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

QSize ProminentButton::sizeHint() const {
  // 8 around the title within the button, 8 more for the large size, 4 for the focus ring.
  const QSize title = fontMetrics().size(Qt::TextSingleLine, text());
  return {std::max(280, title.width() + 56), title.height() + 2 * (8 + 4 + 4)};
}

bool ProminentButton::event(QEvent* event) {
  const bool handled = QPushButton::event(event);
  if (changesTheme(*event) && font() != prominentFont()) setFont(prominentFont());
  return handled;
}

void ProminentButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF body = QRectF(rect()).adjusted(4, 4, -4, -4);
  const double radius = 10;
  QColor fill = colorFor(ColorRole::accent, palette());
  QColor title = colorFor(ColorRole::onAccent, palette());
  if (!isEnabled()) {
    fill = colorFor(ColorRole::track, palette());
    title = colorFor(ColorRole::secondary, palette());
  } else if (isDown()) {
    fill = fill.darker(125);
  } else if (underMouse()) {
    fill = fill.darker(108);
  }
  painter.fillPath(continuousRectangle(body, radius), fill);
  if (hasFocus()) drawFocusRing(painter, rect(), radius + 3, palette());
  painter.setPen(title);
  painter.drawText(body, Qt::AlignCenter | Qt::TextSingleLine, text());
}

PlainButton::PlainButton(const QString& title, Size size, QWidget* parent)
    : QPushButton(title, parent), size_(size) {
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize PlainButton::sizeHint() const {
  const QSize title = fontMetrics().size(Qt::TextSingleLine, text());
  const bool large = size_ == Size::large;
  return {title.width() + (large ? 64 : 40), title.height() + (large ? 20 : 14)};
}

void PlainButton::keyPressEvent(QKeyEvent* event) {
  // A key that is held on the button before this one is not meant for this one.
  if (event->isAutoRepeat()) return event->ignore();
  QPushButton::keyPressEvent(event);
}

void PlainButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF body = QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5);
  const double radius = size_ == Size::large ? 8 : 6;
  const QPainterPath outline = continuousRectangle(body, radius);
  QColor shade = colorFor(ColorRole::primary, palette());
  shade.setAlphaF(!isEnabled() ? 0.02F : isDown() ? 0.16F : underMouse() ? 0.1F : 0.05F);
  painter.setPen(QPen(colorFor(ColorRole::track, palette()), 1));
  painter.setBrush(shade);
  painter.drawPath(outline);
  if (hasFocus()) drawFocusRing(painter, rect(), radius + 2, palette());
  painter.setPen(titleColor(*this, ColorRole::primary));
  painter.drawText(body, Qt::AlignCenter | Qt::TextSingleLine, text());
}

LinkButton::LinkButton(const QString& title, QWidget* parent) : QPushButton(title, parent) {
  setFlat(true);
  setCursor(Qt::PointingHandCursor);
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize LinkButton::sizeHint() const {
  return fontMetrics().size(Qt::TextSingleLine, text()) + QSize(12, 8);
}

void LinkButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QFont titleFont = font();
  titleFont.setUnderline(underMouse() || isDown());
  painter.setFont(titleFont);
  painter.setPen(titleColor(*this, ColorRole::link));
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
  if (hasFocus()) drawFocusRing(painter, rect(), 6, palette());
}

ToolbarButton::ToolbarButton(const QString& title, Symbol symbol, QWidget* parent)
    : QToolButton(parent) {
  setText(title);
  setAccessibleName(title);
  setIcon(symbolIcon(symbol));
  setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  setAutoRaise(true);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  fitIcon();
}

QSize ToolbarButton::sizeHint() const {
  const QSize title = fontMetrics().size(Qt::TextSingleLine, text());
  return {iconSize().width() + 6 + title.width() + 12,
          std::max(title.height(), iconSize().height()) + 8};
}

bool ToolbarButton::event(QEvent* event) {
  const bool handled = QToolButton::event(event);
  if (changesTheme(*event)) fitIcon();
  return handled;
}

void ToolbarButton::fitIcon() {
  const int side = fontMetrics().height();
  if (iconSize().width() != side) setIconSize(QSize(side, side));
}

void ToolbarButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  drawHover(painter, *this, 6);
  const int side = iconSize().width();
  const QRect iconBox(6, (height() - side) / 2, side, side);
  icon().paint(&painter, QStyle::visualRect(layoutDirection(), rect(), iconBox), Qt::AlignCenter,
               isEnabled() ? QIcon::Normal : QIcon::Disabled);
  painter.setPen(titleColor(*this, ColorRole::primary));
  const QRect titleBox = rect().adjusted(side + 12, 0, -6, 0);
  painter.drawText(QStyle::visualRect(layoutDirection(), rect(), titleBox),
                   Qt::AlignCenter | Qt::TextSingleLine, text());
  if (hasFocus()) drawFocusRing(painter, rect(), 6, palette());
}

DisclosureButton::DisclosureButton(const QString& title, QWidget* parent)
    : QPushButton(title, parent) {
  setCheckable(true);
  setFlat(true);
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  const auto describe = [this](bool open) {
    setAccessibleDescription(open ? QStringLiteral("expanded") : QStringLiteral("collapsed"));
  };
  describe(false);
  QObject::connect(this, &QAbstractButton::toggled, this, describe);
}

QSize DisclosureButton::sizeHint() const {
  const QSize title = fontMetrics().size(Qt::TextSingleLine, text());
  return {title.height() + title.width() + 12, title.height() + 8};
}

void DisclosureButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  drawHover(painter, *this, 6);
  const bool mirrored = layoutDirection() == Qt::RightToLeft;
  const double side = fontMetrics().height();
  const double middle = side / 2 + 3;
  painter.save();
  painter.translate(mirrored ? width() - middle : middle, height() / 2.0);
  painter.rotate(isChecked() ? 90 : (mirrored ? 180 : 0));
  painter.setPen(QPen(titleColor(*this, ColorRole::secondary), side * 0.11, Qt::SolidLine,
                      Qt::RoundCap, Qt::RoundJoin));
  const double arm = side * 0.2;
  painter.drawPolyline(
      QPolygonF({QPointF(-arm / 2, -arm), QPointF(arm / 2, 0), QPointF(-arm / 2, arm)}));
  painter.restore();
  painter.setPen(titleColor(*this, ColorRole::primary));
  const QRect titleBox = rect().adjusted(static_cast<int>(side) + 6, 0, -6, 0);
  painter.drawText(QStyle::visualRect(layoutDirection(), rect(), titleBox),
                   Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine, text());
  if (hasFocus()) drawFocusRing(painter, rect(), 6, palette());
}

}  // namespace tarnwick
