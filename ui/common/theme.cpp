#include "ui/common/theme.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QLineEdit>
#include <algorithm>
#include <cmath>

namespace tarnwick {
namespace {

constexpr double readable = 4.5;

double channelLuminance(double value) {
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * channelLuminance(color.redF()) + 0.7152 * channelLuminance(color.greenF()) +
         0.0722 * channelLuminance(color.blueF());
}

QColor mixed(const QColor& one, const QColor& other, double share) {
  const auto mix = [share](float a, float b) {
    return static_cast<float>(a * (1 - share) + b * share);
  };
  return QColor::fromRgbF(mix(one.redF(), other.redF()), mix(one.greenF(), other.greenF()),
                          mix(one.blueF(), other.blueF()));
}

/// `color` moved towards black or white, as little as needed to be readable on both grounds.
QColor readableOn(const QColor& color, const QColor& ground, const QColor& otherGround) {
  const QColor target = luminance(ground) < 0.18 ? Qt::white : Qt::black;
  constexpr int steps = 25;
  for (int step = 0; step < steps; ++step) {
    const QColor candidate = mixed(color, target, static_cast<double>(step) / steps);
    if (std::min(contrast(candidate, ground), contrast(candidate, otherGround)) >= readable) {
      return candidate;
    }
  }
  return target;
}

QColor readableIn(const QColor& color, const QPalette& palette) {
  return readableOn(color, palette.color(QPalette::Base), palette.color(QPalette::Window));
}

QColor accent(const QPalette& palette) {
  const QColor color = palette.color(QPalette::Active, QPalette::Highlight);
  // A highlight that is nearly white or grey carries dark text; leave such themes alone.
  if (luminance(color) > 0.45) return color;
  return readableOn(color, Qt::white, Qt::white);
}

double scaleOf(FontRole role) {
  switch (role) {
    case FontRole::largeTitle:
      return 2.0;
    case FontRole::title2:
      return 1.3;
    case FontRole::title3:
      return 1.15;
    case FontRole::callout:
      return 0.95;
    case FontRole::caption:
    case FontRole::mono:
      return 0.87;
    case FontRole::headline:
    case FontRole::body:
      break;
  }
  return 1.0;
}

}  // namespace

QFont fontFor(FontRole role) {
  const QFont user = QApplication::font();
  QFont font = user;
  if (role == FontRole::mono) {
    font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::Monospace);
  }
  const double scale = scaleOf(role);
  if (user.pointSizeF() > 0) {
    font.setPointSizeF(user.pointSizeF() * scale);
  } else {
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(user.pixelSize() * scale))));
  }
  if (role == FontRole::largeTitle) font.setWeight(QFont::Bold);
  if (role == FontRole::headline) font.setWeight(QFont::DemiBold);
  return font;
}

QColor colorFor(ColorRole role, const QPalette& palette) {
  const bool dark = isDark(palette);
  const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
  const QColor base = palette.color(QPalette::Base);
  switch (role) {
    case ColorRole::primary:
      return text;
    case ColorRole::secondary:
      return readableIn(mixed(text, palette.color(QPalette::Window), 0.38), palette);
    case ColorRole::accent:
      return accent(palette);
    case ColorRole::onAccent:
      return luminance(accent(palette)) > 0.45 ? Qt::black : Qt::white;
    case ColorRole::card:
      return base;
    case ColorRole::cardEdge:
      return mixed(base, text, dark ? 0.14 : 0.11);
    case ColorRole::track:
      return mixed(base, text, dark ? 0.2 : 0.13);
    case ColorRole::warningFill: {
      QColor fill(255, 149, 0);
      fill.setAlphaF(0.12F);
      return fill;
    }
    case ColorRole::orange:
      return readableOn(dark ? QColor(255, 159, 10) : QColor(255, 149, 0),
                        mixed(palette.color(QPalette::Window), QColor(255, 149, 0), 0.12), base);
    case ColorRole::green:
      return readableIn(dark ? QColor(48, 209, 88) : QColor(40, 180, 80), palette);
    case ColorRole::red:
      return readableIn(dark ? QColor(255, 69, 58) : QColor(230, 50, 40), palette);
    case ColorRole::grey:
      return readableIn(QColor(142, 142, 147), palette);
    case ColorRole::link:
      return readableIn(dark ? mixed(accent(palette), Qt::white, 0.35) : accent(palette), palette);
  }
  return text;
}

void outlineControls(QWidget& area) {
  const QPalette user = QApplication::palette();
  QColor ground = user.color(QPalette::Window);
  // The outline is darker than this again, and then has a contrast of 3 to its surroundings.
  constexpr double share = 0.55;
  if (isDark(user)) ground = mixed(ground, user.color(QPalette::WindowText), share);
  const auto widgets = area.findChildren<QWidget*>();
  for (QWidget* widget : widgets) {
    // Buttons draw their own outlines.
    const bool isField =
        qobject_cast<QLineEdit*>(widget) || qobject_cast<QAbstractSpinBox*>(widget);
    if (!isField && !qobject_cast<QCheckBox*>(widget) && !qobject_cast<QComboBox*>(widget))
      continue;
    QPalette changed = widget->palette();
    changed.setColor(QPalette::Window, ground);
    widget->setPalette(changed);
  }
}

bool isDark(const QPalette& palette) {
  return luminance(palette.color(QPalette::Window)) <
         luminance(palette.color(QPalette::WindowText));
}

double contrast(const QColor& one, const QColor& other) {
  const double a = luminance(one);
  const double b = luminance(other);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

bool changesTheme(const QEvent& event) {
  switch (event.type()) {
    case QEvent::PaletteChange:
    case QEvent::ApplicationPaletteChange:
    case QEvent::ApplicationFontChange:
    case QEvent::FontChange:
    case QEvent::StyleChange:
    case QEvent::ThemeChange:
      return true;
    default:
      return false;
  }
}

}  // namespace tarnwick
