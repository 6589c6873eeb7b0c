#include "ui/tray/status_icon.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

// The middle of the screen is the pure colour of the phase.
QColor screenColor(const QImage& icon) {
  return icon.pixelColor((QPointF(10, 6) * icon.devicePixelRatio()).toPoint());
}

class StatusIconAt : public testing::TestWithParam<int> {};

TEST_P(StatusIconAt, DrawsAMonitorOnAFootInAClearField) {
  const int ratio = GetParam();
  const QImage icon = StatusIcon::image(Phase::running, ratio);
  EXPECT_EQ(icon.size(), QSize(20, 16) * ratio);
  EXPECT_EQ(icon.deviceIndependentSize(), QSizeF(20, 16));

  const QColor green = screenColor(icon);
  const auto at = [&](double x, double y) {
    return icon.pixelColor(static_cast<int>(x * ratio), static_cast<int>(y * ratio));
  };
  // Rows count from the top: the screen covers 1 to 12, the foot 13 to 15, between them nothing.
  for (const double y : {13.0, 14.5}) {
    EXPECT_EQ(at(7, y), green) << "the foot is of the screen's colour and has no outline";
    EXPECT_EQ(at(12.5, y), green);
    EXPECT_EQ(at(6, y).alpha(), 0);
    EXPECT_EQ(at(13, y).alpha(), 0);
  }
  EXPECT_EQ(at(10, 15).alpha(), 0);
  EXPECT_EQ(at(0, 6).alpha(), 0);
  EXPECT_EQ(at(19, 6).alpha(), 0);
  EXPECT_LT(at(2, 1).alpha(), 200) << "the screen's corners are round";
  EXPECT_LT(at(2, 6).lightness(), green.lightness()) << "the screen has a darker outline";
  EXPECT_LT(at(17.5, 6).lightness(), green.lightness());
}

INSTANTIATE_TEST_SUITE_P(Pixels, StatusIconAt, testing::Values(1, 2));

TEST(StatusIcon, TellsThePhaseByItsColour) {
  const QColor idle = screenColor(StatusIcon::image(Phase::idle));
  const QColor busy = screenColor(StatusIcon::image(Phase::busy));
  const QColor running = screenColor(StatusIcon::image(Phase::running));
  EXPECT_LT(idle.hsvSaturation(), 20) << "grey";
  EXPECT_NEAR(busy.hsvHue(), 35, 10) << "orange";
  EXPECT_NEAR(running.hsvHue(), 135, 20) << "green";
  for (const QColor& color : {idle, busy, running}) EXPECT_EQ(color.alpha(), 255);
}

TEST(StatusIcon, ComesSharpForPlainAndDoubledPixels) {
  EXPECT_EQ(StatusIcon::icon(Phase::busy).availableSizes(),
            (QList<QSize>{QSize(20, 16), QSize(40, 32)}));
}

}  // namespace
}  // namespace tarnwick
