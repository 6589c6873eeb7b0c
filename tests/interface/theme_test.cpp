#include "ui/common/theme.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include "ui/common/logo_view.h"
#include "ui/common/shapes.h"
#include "ui/common/symbols.h"
#include "ui/common/text_label.h"

namespace tarnwick {
namespace {

QPalette paletteOf(QRgb window, QRgb base, QRgb text, QRgb highlight) {
  QPalette palette;
  palette.setColor(QPalette::Window, window);
  palette.setColor(QPalette::Base, base);
  palette.setColor(QPalette::WindowText, text);
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::Highlight, highlight);
  return palette;
}

const QPalette light = paletteOf(0xffefefef, 0xffffffff, 0xff000000, 0xff308cc6);
const QPalette dark = paletteOf(0xff2d2d30, 0xff1e1e1e, 0xffffffff, 0xff2a82da);
const QPalette darkWithLightCards = paletteOf(0xff303030, 0xff454545, 0xffe0e0e0, 0xff9bd0ff);

class ColorsIn : public testing::TestWithParam<QPalette> {};

TEST_P(ColorsIn, TextIsReadableOnCardsAndWindows) {
  const QPalette& palette = GetParam();
  for (const ColorRole role : {ColorRole::secondary, ColorRole::green, ColorRole::red,
                               ColorRole::grey, ColorRole::link, ColorRole::orange}) {
    const QColor color = colorFor(role, palette);
    EXPECT_GE(contrast(color, palette.color(QPalette::Base)), 4.5) << static_cast<int>(role);
    if (role != ColorRole::orange) {
      EXPECT_GE(contrast(color, palette.color(QPalette::Window)), 4.5) << static_cast<int>(role);
    }
  }
  EXPECT_GE(contrast(colorFor(ColorRole::onAccent, palette), colorFor(ColorRole::accent, palette)),
            4.5);
}

INSTANTIATE_TEST_SUITE_P(Themes, ColorsIn, testing::Values(light, dark, darkWithLightCards));

TEST(Theme, LabelsFollowPaletteAndFontWhileRunning) {
  const QPalette paletteBefore = QApplication::palette();
  const QFont fontBefore = QApplication::font();
  TextLabel label("text", FontRole::largeTitle, ColorRole::secondary);
  label.show();
  QApplication::setPalette(dark);
  QCoreApplication::processEvents();
  EXPECT_EQ(label.palette().color(QPalette::WindowText), colorFor(ColorRole::secondary, dark));
  QFont larger = fontBefore;
  larger.setPointSizeF(fontBefore.pointSizeF() * 1.5);
  QApplication::setFont(larger);
  QCoreApplication::processEvents();
  EXPECT_NEAR(label.font().pointSizeF(), larger.pointSizeF() * 2, 0.5);
  QApplication::setFont(fontBefore);
  QApplication::setPalette(paletteBefore);
}

QImage drawn(const QIcon& icon, int size, double scale) {
  const QPixmap pixmap = icon.pixmap(QSize(size, size), scale);
  return pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
}

TEST(Symbols, AreCrispAtEveryScaleAndTakeTheThemesColour) {
  const QPalette before = QApplication::palette();
  for (const Symbol symbol :
       {Symbol::circle, Symbol::checkmarkCircleFill, Symbol::xmarkCircleFill,
        Symbol::exclamationmarkTriangleFill, Symbol::arrowsOut, Symbol::arrowClockwise,
        Symbol::compass, Symbol::docText, Symbol::stopFill, Symbol::house, Symbol::keyboard}) {
    const QIcon icon = symbolIcon(symbol);
    for (const QPalette& palette : {light, dark}) {
      QApplication::setPalette(palette);
      const QImage image = drawn(icon, 20, 2);
      ASSERT_EQ(image.size(), QSize(40, 40)) << "drawn for the screen, not enlarged";
      int opaque = 0;
      for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 40; ++x) {
          const QRgb pixel = image.pixel(x, y);
          if (qAlpha(pixel) < 250) continue;
          ++opaque;
          EXPECT_EQ(pixel | 0xff000000, palette.color(QPalette::WindowText).rgb());
        }
      }
      EXPECT_GT(opaque, 60) << static_cast<int>(symbol);
      EXPECT_LT(opaque, 1400) << static_cast<int>(symbol);
    }
  }
  QApplication::setPalette(before);
}

TEST(Logo, HasItsPartsAtTheirPlaces) {
  QImage image(100, 100, QImage::Format_ARGB32);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  drawLogo(painter, 100);
  painter.end();
  EXPECT_EQ(qAlpha(image.pixel(1, 1)), 0) << "round corners";
  EXPECT_EQ(qAlpha(image.pixel(50, 1)), 255);
  const QColor title(image.pixel(75, 33));
  const QColor body(image.pixel(75, 60));
  EXPECT_GT(title.blue(), body.blue());
  EXPECT_LT(body.lightness(), 70) << "the terminal is dark";
  const QColor redDot(image.pixel(17 + 6 + 3, 33));
  const QColor greenDot(image.pixel(17 + 6 + 3 + 20, 33));
  EXPECT_GT(redDot.red(), redDot.green());
  EXPECT_GT(greenDot.green(), greenDot.red());
  const QColor left(image.pixel(8, 30));
  const QColor lower(image.pixel(90, 92));
  EXPECT_GT(left.lightness(), lower.lightness()) << "lighter at the top left";
}

TEST(Shapes, ContinuousCornersReachAsFarAsACirclesArc) {
  const QPainterPath path = continuousRectangle(QRectF(0, 0, 100, 100), 23);
  const double cut = 23 * (1 - std::sqrt(0.5));
  EXPECT_TRUE(path.contains(QPointF(cut + 0.5, cut + 0.5)));
  EXPECT_FALSE(path.contains(QPointF(cut - 0.5, cut - 0.5)));
}

}  // namespace
}  // namespace tarnwick
