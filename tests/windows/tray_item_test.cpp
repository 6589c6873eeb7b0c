#include "ui/tray/tray_item.h"

#include <gtest/gtest.h>

#include "tests/windows/windows_fixture.h"

namespace tarnwick {
namespace {

class TrayItemTest : public testing::Test, public WindowsWorld {
 protected:
  TrayItemTest() : item(controller, windows) {}

  QAction* action(const QString& text) {
    for (QAction* each : item.menu().actions()) {
      if (each->text() == text) return each;
    }
    return nullptr;
  }
  QColor iconColor() { return item.icon().icon().pixmap(20, 16).toImage().pixelColor(10, 6); }

  TrayItem item;
};

TEST_F(TrayItemTest, HasStatusOpenStopAndQuit) {
  QStringList texts;
  for (const QAction* each : item.menu().actions()) {
    texts << (each->isSeparator() ? "-" : each->text());
  }
  EXPECT_EQ(texts, QStringList({"Tarnwick: Stopped", "-", "Open desktop", "Stop", "-", "Quit"}));
  EXPECT_FALSE(item.menu().actions().first()->isEnabled()) << "the status is no command";
  EXPECT_FALSE(action("Stop")->isEnabled());
}

TEST_F(TrayItemTest, FollowsThePhase) {
  const QColor idle = iconColor();
  controller.phase = Phase::busy;
  settle();
  EXPECT_NE(action("Tarnwick: Starting…"), nullptr);
  EXPECT_TRUE(action("Stop")->isEnabled());
  const QColor busy = iconColor();

  controller.phase = Phase::running;
  settle();
  EXPECT_NE(action("Tarnwick: Running (Standard)"), nullptr);
  EXPECT_TRUE(action("Stop")->isEnabled());
  const QColor running = iconColor();
  EXPECT_NE(idle, busy);
  EXPECT_NE(busy, running);

  controller.settings.flavorID = Flavor::all().back().id;
  settle();
  EXPECT_NE(
      action(
          QString("Tarnwick: Running (%1)").arg(QString::fromStdString(Flavor::all().back().name))),
      nullptr);
}

TEST_F(TrayItemTest, OpenDesktopBringsTheMainWindowAndLaunches) {
  action("Open desktop")->trigger();
  EXPECT_EQ(windows.opened, std::vector<std::string>{mainWindowId});
  EXPECT_EQ(controller.phase.get(), Phase::busy);
}

TEST_F(TrayItemTest, OpenDesktopShowsTheRunningDesktop) {
  controller.phase = Phase::running;
  action("Open desktop")->trigger();
  EXPECT_EQ(windows.opened, std::vector<std::string>{mainWindowId});
  EXPECT_TRUE(controller.showDesktop.get());
}

TEST_F(TrayItemTest, StopStops) {
  controller.phase = Phase::running;
  settle();
  action("Stop")->trigger();
  settle();
  EXPECT_EQ(runner.count({"docker", "stop", "tarnwick"}), 1U);
}

TEST_F(TrayItemTest, QuitEndsTheApplicationTheOrdinaryWay) {
  QTimer::singleShot(0, action("Quit"), &QAction::trigger);
  // Does not come back without a quit.
  bool aboutToQuit = false;
  QObject context;
  QObject::connect(qApp, &QCoreApplication::aboutToQuit, &context, [&] { aboutToQuit = true; });
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_TRUE(aboutToQuit);
}

}  // namespace
}  // namespace tarnwick
