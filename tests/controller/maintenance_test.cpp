#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/controller_harness.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using Fake = FakeCommandRunner;
using testing::HasSubstr;

class Maintenance : public testing::Test {
 protected:
  void runContainerOf(const std::string& tag) {
    world.container = "registry.test/linuxserver/webtop:" + tag;
    world.containerRuns = true;
  }
  void startMonitor() {
    c.startMonitor();
    world.mainThread.advance(1s);
  }
  ControllerHarness world;
  DesktopController& c = world.controller;
};

TEST_F(Maintenance, RestartingColimaStopsBothAndSaysWhatToDo) {
  runContainerOf("latest");
  startMonitor();
  ASSERT_EQ(c.phase.get(), Phase::running);
  c.restartColima();
  EXPECT_TRUE(c.isStopping.get());
  world.mainThread.advance(1s);
  EXPECT_EQ(c.phase.get(), Phase::idle);
  EXPECT_EQ(c.notice.get(),
            "Colima was stopped. Press the main button to start it again with the new settings.");
  EXPECT_EQ(world.runner.count({"docker", "stop", "tarnwick"}), 1U);

  world.runner.on({"colima", "stop"}, Fake::failure("no instance"));
  c.restartColima();
  world.mainThread.advance(1s);
  EXPECT_EQ(c.notice.get(), "Could not stop Colima: no instance");
}

TEST_F(Maintenance, AFailedLoginServiceGoesBackAndSaysWhy) {
  world.runner.on({"brew", "services"}, Fake::failure("no formula"));
  c.setColimaAtLogin(true);
  EXPECT_TRUE(c.settings.colimaAtLogin.get());
  world.mainThread.advance(1s);
  EXPECT_FALSE(c.settings.colimaAtLogin.get());
  EXPECT_FALSE(world.store.boolean("colimaAtLogin"));
  EXPECT_EQ(c.notice.get(), "brew services could not change Colima's login item: no formula");

  world.runner.on({"brew", "services"}, Fake::success());
  c.setColimaAtLogin(true);
  world.mainThread.advance(1s);
  EXPECT_TRUE(c.settings.colimaAtLogin.get());
}

TEST_F(Maintenance, UpdateWithoutToolsOnlySaysSo) {
  world.tools.installed = {"docker"};
  c.update();
  EXPECT_EQ(c.notice.get(), "Docker and Colima are not installed yet.");
  EXPECT_EQ(c.phase.get(), Phase::idle);
}

TEST_F(Maintenance, RemovingTheRunningFlavorRemovesItsContainerAndVolume) {
  world.runner.on({"docker", "volume", "rm"}, Fake::success());
  runContainerOf("latest");
  startMonitor();
  c.settings.markLaunched("alpine-xfce");
  c.removeFlavor(Flavor::resolve("alpine-xfce"));
  world.mainThread.advance(1s);
  EXPECT_EQ(c.phase.get(), Phase::idle);
  EXPECT_TRUE(world.container.empty());
  EXPECT_TRUE(c.settings.launchedFlavors.get().empty());
  EXPECT_EQ(c.notice.get(),
            "Removed the container (if it used Standard) and the volume "
            "tarnwick-config-alpine-xfce.");
}

TEST_F(Maintenance, RemovingAnotherFlavorLeavesTheRunningOneAlone) {
  world.runner.on({"docker", "volume", "rm"},
                  Fake::failure("Error: No such volume: tarnwick-config-debian-kde"));
  runContainerOf("latest");
  startMonitor();
  c.settings.markLaunched("debian-kde");
  c.removeFlavor(Flavor::resolve("debian-kde"));
  world.mainThread.advance(1s);
  EXPECT_EQ(c.phase.get(), Phase::running);
  EXPECT_TRUE(world.containerRuns);
  EXPECT_EQ(c.notice.get(), "There was no saved data for Debian KDE.");
  EXPECT_TRUE(c.settings.launchedFlavors.get().empty());
}

TEST_F(Maintenance, AVolumeInUseIsKeptAndSaidSo) {
  world.runner.on({"docker", "volume", "rm"}, Fake::failure("volume is in use"));
  c.settings.markLaunched("alpine-i3");
  c.removeFlavor(Flavor::resolve("alpine-i3"));
  world.mainThread.advance(1s);
  EXPECT_EQ(c.errorSummary.get(),
            "The volume could not be removed. Stop the desktop first, then try again.");
  EXPECT_EQ(c.log->text(), "volume is in use\n");
  EXPECT_EQ(c.settings.launchedFlavors.get().size(), 1U);
}

TEST_F(Maintenance, TheMonitorAdoptsARunningDesktopAndNoticesItsLoss) {
  runContainerOf("ubuntu-kde");
  c.startMonitor();
  c.startMonitor();
  world.mainThread.advance(1s);
  EXPECT_EQ(c.phase.get(), Phase::running);
  EXPECT_EQ(c.settings.flavorID.get(), "ubuntu-kde");
  EXPECT_FALSE(c.showDesktop.get());
  EXPECT_EQ(world.runner.count({"docker", "inspect"}), 1U);

  c.primary();
  EXPECT_TRUE(c.showDesktop.get());
  world.container.clear();
  world.mainThread.advance(7s);
  EXPECT_EQ(c.phase.get(), Phase::idle);
  EXPECT_FALSE(c.showDesktop.get());
}

TEST_F(Maintenance, TheMonitorKeepsTheFlavorOfAnUnknownImageAndWaitsForAnAnswer) {
  runContainerOf("some-other-tag");
  world.httpProbe.answer = [] { return std::optional<int>(502); };
  c.startMonitor();
  world.mainThread.advance(13s);
  EXPECT_EQ(c.phase.get(), Phase::idle);
  world.httpProbe.answer = [] { return std::optional<int>(401); };
  world.mainThread.advance(6s);
  EXPECT_EQ(c.phase.get(), Phase::running);
  EXPECT_EQ(c.settings.flavorID.get(), "alpine-xfce");
}

TEST_F(Maintenance, AQueryFromBeforeALaunchDoesNotCloseItsDesktop) {
  world.runner.once({"docker", "inspect"}, Fake::timeOut(), 10s);
  startMonitor();
  const auto [http, https] = PortCheck::freePair(24'000);
  c.settings.httpPort = http;
  c.settings.httpsPort = https;
  c.primary();
  world.mainThread.advance(5s);
  ASSERT_EQ(c.phase.get(), Phase::running);
  world.mainThread.advance(5s);
  EXPECT_EQ(c.phase.get(), Phase::running);
  EXPECT_TRUE(c.showDesktop.get());
}

TEST_F(Maintenance, TheMonitorLeavesALaunchAndAStopAlone) {
  // A query that was under way when the launch began must not decide about it.
  runContainerOf("latest");
  startMonitor();
  world.runner.once({"docker", "inspect"}, Fake::failure("gone"), 5s);
  world.mainThread.advance(7s);
  world.runner.on({"docker", "info"}, 30s, Fake::always(Fake::success()));
  c.applySettings();
  world.mainThread.advance(20s);
  EXPECT_EQ(c.phase.get(), Phase::busy);
  ASSERT_TRUE(world.runToEnd());

  world.runner.on({"docker", "stop"}, 30s, Fake::always(Fake::success()));
  c.stop();
  world.mainThread.advance(20s);
  EXPECT_EQ(c.statusText(), "Stopping…");
}

}  // namespace
}  // namespace tarnwick
