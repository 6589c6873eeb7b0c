#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "practice_world.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

TEST(LaunchFlow, ColdStartStopAndWarmStart) {
  PracticeWorld world;
  DesktopController& c = world.controller;
  ASSERT_TRUE(world.launch());
  EXPECT_EQ(c.phase.get(), Phase::running) << c.log->text();
  EXPECT_THAT(c.log->text(), HasSubstr("Pull complete"));

  c.stop();
  ASSERT_TRUE(world.waitUntilSettled());
  EXPECT_EQ(c.statusText(), "Stopped");

  ASSERT_TRUE(world.launch());
  EXPECT_EQ(c.phase.get(), Phase::running);
  EXPECT_TRUE(c.log->empty()) << "nothing was started or downloaded again: " << c.log->text();
}

TEST(LaunchFlow, PlainRunWhereThereIsNoCompose) {
  PracticeWorld world;
  world.orderFaults("compose-missing");
  ASSERT_TRUE(world.launch());
  EXPECT_EQ(world.controller.phase.get(), Phase::running) << world.controller.log->text();
}

TEST(LaunchFlow, InstallsWithHomebrewAndGoesOn) {
  PracticeWorld world(PracticeWorld::Installed::homebrewOnly);
  DesktopController& c = world.controller;
  c.primary();
  ASSERT_TRUE(c.askInstall.get());
  c.dismissInstallOffer();
  c.confirmInstall();
  ASSERT_TRUE(world.waitUntilSettled());
  EXPECT_EQ(c.phase.get(), Phase::running) << c.log->text();
}

TEST(LaunchFlow, APasswordProtectsThePage) {
  PracticeWorld world;
  DesktopController& c = world.controller;
  c.settings.setRequirePassword(true);
  ASSERT_TRUE(world.launch());
  ASSERT_EQ(c.phase.get(), Phase::running) << c.log->text();
  const std::string url = "http://127.0.0.1:" + std::to_string(c.settings.httpPort.get()) + "/";
  EXPECT_EQ(world.httpProbe.status(url, 2s), 401);
}

TEST(LaunchFlow, UpdateRemovalAndColimaRestart) {
  PracticeWorld world;
  DesktopController& c = world.controller;
  ASSERT_TRUE(world.launch());
  c.update();
  ASSERT_TRUE(world.waitUntilSettled());
  ASSERT_EQ(c.phase.get(), Phase::running) << c.log->text();

  c.removeFlavor(c.currentFlavor());
  ASSERT_TRUE(world.mainThread.runUntil([&c] { return c.notice.get().has_value(); }, 20s));
  EXPECT_THAT(*c.notice.get(), HasSubstr("the volume tarnwick-config-alpine-xfce."));
  EXPECT_EQ(c.phase.get(), Phase::idle);

  c.restartColima();
  ASSERT_TRUE(world.waitUntilSettled());
  EXPECT_THAT(*c.notice.get(), HasSubstr("Colima was stopped."));
}

}  // namespace
}  // namespace tarnwick
