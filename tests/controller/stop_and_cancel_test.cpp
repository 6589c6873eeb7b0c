#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/controller_harness.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using Fake = FakeCommandRunner;
using testing::HasSubstr;

class StopAndCancel : public testing::Test {
 protected:
  StopAndCancel() {
    const auto [http, https] = PortCheck::freePair(24'000);
    c.settings.httpPort = http;
    c.settings.httpsPort = https;
  }
  void launch() {
    c.primary();
    ASSERT_TRUE(world.runToEnd());
    ASSERT_EQ(c.phase.get(), Phase::running);
  }
  void expectCancelled() {
    ASSERT_TRUE(world.runToEnd());
    EXPECT_EQ(c.phase.get(), Phase::idle);
    EXPECT_EQ(c.notice.get(), "Cancelled.");
    EXPECT_FALSE(c.errorSummary.get());
    EXPECT_EQ(c.stages.get(), initialStages());
    EXPECT_EQ(c.progressText.get(), "");
  }
  ControllerHarness world;
  DesktopController& c = world.controller;
};

TEST_F(StopAndCancel, CancelEndsADownloadAtOnce) {
  world.runner.on({"docker", "image", "inspect"}, Fake::failure());
  world.streams.runs["pull"].pauseBeforeEnd = 1h;
  c.primary();
  world.mainThread.advance(10s);
  c.cancel();
  const TimePoint pressed = world.mainThread.now();
  expectCancelled();
  EXPECT_EQ(world.mainThread.now(), pressed);
  EXPECT_EQ(world.streams.terminated, 1);
}

TEST_F(StopAndCancel, StopWhileBusyCancelsAndStopsNoContainer) {
  world.runner.on({"docker", "info"}, Fake::failure());
  world.streams.runs["start"].pauseBeforeEnd = 1h;
  c.primary();
  world.mainThread.advance(10s);
  c.stop();
  expectCancelled();
  EXPECT_EQ(world.runner.count({"docker", "stop"}), 0U);
}

TEST_F(StopAndCancel, CancelDuringTheCreationWaitsForItAndThenCounts) {
  world.runner.on({"docker", "compose", "-p"}, 20s, Fake::always(Fake::success()));
  c.primary();
  world.mainThread.advance(5s);
  c.cancel();
  world.mainThread.advance(5s);
  EXPECT_EQ(c.phase.get(), Phase::busy);
  expectCancelled();
  EXPECT_TRUE(world.httpProbe.asked.empty());
}

TEST_F(StopAndCancel, CancelEndsTheWaitBetweenTwoProbes) {
  world.httpProbe.answer = [] { return std::optional<int>(); };
  c.primary();
  world.mainThread.advance(1s);
  const TimePoint pressed = world.mainThread.now();
  c.cancel();
  expectCancelled();
  EXPECT_EQ(world.mainThread.now(), pressed);
  // The next run starts afresh.
  world.httpProbe.answer = [] { return std::optional<int>(401); };
  launch();
}

TEST_F(StopAndCancel, CancelRightAfterThePressRunsNoTool) {
  world.tools.installed = {"brew"};
  c.confirmInstall();
  c.cancel();
  expectCancelled();
  EXPECT_TRUE(world.streams.calls.empty());

  world.tools.installed = {"docker", "colima"};
  c.primary();
  c.cancel();
  expectCancelled();
  EXPECT_TRUE(world.runner.calls.empty());
}

TEST_F(StopAndCancel, CancelWhileIdleChangesNothingThatIsShown) {
  int announced = 0;
  const auto subscription = c.changes().observe([&announced] { ++announced; });
  c.cancel();
  world.mainThread.advance(10s);
  EXPECT_EQ(announced, 0);
}

TEST_F(StopAndCancel, StopEndsTheContainerAndLeavesColimaRunning) {
  launch();
  world.runner.on({"docker", "stop"}, 8s, [this](const Fake::Call&) {
    world.containerRuns = false;
    return Fake::success();
  });
  c.stop();
  EXPECT_EQ(c.statusText(), "Stopping…");
  EXPECT_FALSE(c.showDesktop.get());
  world.mainThread.advance(3s);
  c.stop();
  world.mainThread.advance(20s);
  EXPECT_EQ(c.statusText(), "Stopped");
  EXPECT_EQ(c.stages.get(), initialStages());
  EXPECT_EQ(world.runner.count({"docker", "stop"}), 1U) << "one stop at a time";
  EXPECT_EQ(world.runner.count({"colima", "stop"}), 0U);
}

TEST_F(StopAndCancel, AStopThatEndsDuringANewRunLeavesThatRunAlone) {
  launch();
  world.runner.on({"docker", "stop"}, 30s, Fake::always(Fake::success()));
  world.runner.on({"docker", "info"}, 60s, Fake::always(Fake::success()));
  c.stop();
  world.mainThread.advance(1s);
  c.applySettings();
  world.mainThread.advance(40s);
  EXPECT_EQ(c.phase.get(), Phase::busy);
  EXPECT_FALSE(c.isStopping.get());
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(c.phase.get(), Phase::running);
}

TEST_F(StopAndCancel, AnAnswerOfThePageFromBeforeAStopDoesNotBringTheDesktopBack) {
  world.container = ControllerHarness::image;
  world.containerRuns = true;
  world.workers.delay = 2s;
  c.startMonitor();
  world.mainThread.advance(1s);
  c.stop();
  world.mainThread.advance(2s);
  EXPECT_EQ(world.httpProbe.asked.size(), 1U);
  EXPECT_EQ(c.phase.get(), Phase::idle);
}

TEST_F(StopAndCancel, AnAnswerOfThePageFromBeforeARemovalDoesNotEndALaunch) {
  world.httpProbe.answer = [] { return std::optional<int>(); };
  c.primary();
  world.mainThread.advance(1s);
  world.httpProbe.answer = [] { return std::optional<int>(200); };
  world.workers.delay = 2s;
  world.mainThread.advance(2s);
  c.removeFlavor(c.currentFlavor());
  world.mainThread.advance(500ms);
  EXPECT_FALSE(world.containerRuns);
  world.mainThread.advance(1500ms);
  EXPECT_EQ(c.phase.get(), Phase::busy);
  world.httpProbe.answer = [] { return std::optional<int>(); };
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(c.phase.get(), Phase::idle);
  EXPECT_TRUE(c.errorSummary.get());
}

TEST_F(StopAndCancel, StopWithoutDockerChangesNothing) {
  launch();
  world.tools.installed.clear();
  c.stop();
  EXPECT_TRUE(c.showDesktop.get());
  EXPECT_FALSE(c.isStopping.get());
}

TEST_F(StopAndCancel, InstallThenLaunchIsOneRun) {
  world.tools.installed = {"brew"};
  world.streams.runs["install"].lines = {{1s, "==> Fetching colima"}};
  world.streams.runs["install"].pauseBeforeEnd = 5s;
  c.primary();
  EXPECT_TRUE(c.askInstall.get());
  c.dismissInstallOffer();
  c.confirmInstall();
  EXPECT_EQ(c.statusText(), "Installing…");
  EXPECT_TRUE(c.log->empty());
  world.mainThread.advance(2s);
  world.tools.installed = {"brew", "docker", "colima"};
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(c.phase.get(), Phase::running);
  EXPECT_FALSE(c.installing.get());
  EXPECT_THAT(c.log->text(), testing::StartsWith("==> Fetching colima\n"));
}

TEST_F(StopAndCancel, AnInstallThatLeavesAToolMissingOrIsCancelledSaysSo) {
  world.tools.installed = {"brew"};
  c.confirmInstall();
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(c.errorSummary.get(),
            "The installation did not finish. Open Show details to see what Homebrew said.");
  EXPECT_EQ(c.stages.get(), initialStages());

  world.streams.runs["install"].pauseBeforeEnd = 1h;
  c.confirmInstall();
  world.mainThread.advance(10s);
  c.cancel();
  expectCancelled();
}

}  // namespace
}  // namespace tarnwick
