#include "app/stop_desktop.h"

#include <gtest/gtest.h>

#include "tests/support/controller_harness.h"
#include "tests/support/run_task.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using Fake = FakeCommandRunner;

class StopDesktop : public testing::Test {
 protected:
  StopDesktop() {
    const auto [http, https] = PortCheck::freePair(24'400);
    c.settings.httpPort = http;
    c.settings.httpsPort = https;
  }
  Answer stop() {
    return runToEnd(world.mainThread, stopDesktop(c, world.runner, world.tools, world.mainThread))
        .value_or(Answer(ExitCode::wrongUse, "it never ended"));
  }
  void startContainer() {
    world.container = ControllerHarness::image;
    world.containerRuns = true;
  }
  ControllerHarness world;
  DesktopController& c = world.controller;
};

TEST_F(StopDesktop, WithNothingToStopSaysSo) {
  EXPECT_EQ(stop(), Answer(ExitCode::done, "The desktop is not running."));
  world.tools.installed.erase("docker");
  EXPECT_EQ(stop(), Answer(ExitCode::done, "The desktop is not running."));
  EXPECT_EQ(world.runner.count({"docker", "stop"}), 0U);
}

TEST_F(StopDesktop, StopsAContainerThatTheControllerDoesNotKnowOf) {
  startContainer();
  EXPECT_EQ(stop(), Answer(ExitCode::done, "The desktop was stopped."));
  EXPECT_FALSE(world.containerRuns);
  EXPECT_EQ(world.runner.count({"colima"}), 0U);
}

TEST_F(StopDesktop, CancelsAStartAndStopsWhatItHasMade) {
  // The creation goes on to its end although the run was cancelled.
  world.runner.on({"docker", "compose", "-p"}, 20s, [this](const Fake::Call&) {
    startContainer();
    return Fake::success();
  });
  c.primary();
  world.mainThread.advance(10s);
  ASSERT_EQ(c.phase.get(), Phase::busy);
  EXPECT_EQ(stop(), Answer(ExitCode::done, "The desktop was stopped."));
  EXPECT_FALSE(world.containerRuns);
  EXPECT_EQ(c.phase.get(), Phase::idle);
}

TEST_F(StopDesktop, CancelsADownload) {
  world.runner.on({"docker", "image", "inspect"}, Fake::failure());
  world.streams.runs["pull"].pauseBeforeEnd = 1h;
  c.primary();
  world.mainThread.advance(10s);
  EXPECT_EQ(stop(), Answer(ExitCode::done, "The start was cancelled."));
}

TEST_F(StopDesktop, JoinsAStopThatIsUnderWay) {
  startContainer();
  world.runner.on({"docker", "stop"}, 30s, [this](const Fake::Call&) {
    world.containerRuns = false;
    return Fake::success();
  });
  c.stop();
  world.mainThread.advance(1s);
  EXPECT_EQ(stop(), Answer(ExitCode::done, "The desktop was stopped."));
  EXPECT_EQ(world.runner.count({"docker", "stop"}), 1U);
}

TEST_F(StopDesktop, OwnsUpToWhatItCouldNotDo) {
  startContainer();
  world.runner.on({"docker", "stop"}, Fake::failure("permission denied"));
  EXPECT_EQ(stop(), Answer(ExitCode::failed, "The desktop could not be stopped; it still runs."));
  world.runner.on({"docker", "inspect"}, Fake::timeOut());
  EXPECT_EQ(stop().code, ExitCode::failed);
}

}  // namespace
}  // namespace tarnwick
