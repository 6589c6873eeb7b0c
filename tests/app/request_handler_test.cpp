#include "app/request_handler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>

#include "tests/support/controller_harness.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class Requests : public testing::Test {
 protected:
  Requests() {
    const auto [http, https] = PortCheck::freePair(24'800);
    c.settings.httpPort = http;
    c.settings.httpsPort = https;
  }
  void ask(Wish wish, const std::string& token = {}) {
    answer.reset();
    handler.handle({wish, token}, [this](const Answer& given) {
      EXPECT_FALSE(answer) << "answered twice";
      answer = given;
    });
  }
  void startContainer() {
    world.container = ControllerHarness::image;
    world.containerRuns = true;
  }

  ControllerHarness world;
  DesktopController& c = world.controller;
  std::vector<std::string> opened;
  std::optional<Answer> answer;
  RequestHandler handler{
      c, world.runner, world.tools, world.mainThread,
      [this](const char* id, const std::string& token) { opened.push_back(id + (":" + token)); }};
};

TEST_F(Requests, ForWindowsOpenThem) {
  ask(Wish::open, "abc");
  EXPECT_EQ(answer, Answer());
  ask(Wish::settings);
  ask(Wish::logs);
  ask(Wish::background);
  EXPECT_EQ(answer, Answer());
  EXPECT_THAT(opened, ElementsAre("main:abc", "settings:", "logs:"));
  EXPECT_EQ(c.phase.get(), Phase::idle);
}

TEST_F(Requests, ALaunchWaitsForTheFirstLook) {
  ask(Wish::launch);
  EXPECT_THAT(opened, ElementsAre("main:"));
  world.mainThread.advance(5s);
  EXPECT_EQ(c.phase.get(), Phase::idle);
  c.startMonitor();
  world.mainThread.advance(1s);
  EXPECT_TRUE(world.runner.count({"docker", "compose", "-p"}) > 0);
}

TEST_F(Requests, ALaunchShowsADesktopThatIsUp) {
  startContainer();
  c.startMonitor();
  ask(Wish::launch);
  world.mainThread.advance(5s);
  EXPECT_EQ(c.phase.get(), Phase::running);
  EXPECT_TRUE(c.showDesktop);
  EXPECT_EQ(world.runner.count({"docker", "compose", "-p"}), 0U);
}

TEST_F(Requests, ALaunchDuringALaunchChangesNothing) {
  world.runner.on({"docker", "image", "inspect"}, FakeCommandRunner::failure());
  world.streams.runs["pull"].pauseBeforeEnd = 1h;
  c.startMonitor();
  ask(Wish::launch);
  world.mainThread.advance(10s);
  ASSERT_EQ(c.phase.get(), Phase::busy);
  const std::string step = c.progressText.get();
  ask(Wish::launch);
  world.mainThread.advance(10s);
  EXPECT_EQ(c.phase.get(), Phase::busy);
  EXPECT_EQ(c.progressText.get(), step);
}

TEST_F(Requests, ALaunchDuringAStopComesAfterIt) {
  startContainer();
  world.runner.on({"docker", "stop"}, 10s, [this](const FakeCommandRunner::Call&) {
    world.containerRuns = false;
    return FakeCommandRunner::success();
  });
  c.startMonitor();
  world.mainThread.advance(1s);
  c.stop();
  ask(Wish::launch);
  world.mainThread.advance(5s);
  EXPECT_FALSE(c.showDesktop);
  world.mainThread.advance(30s);
  EXPECT_EQ(c.phase.get(), Phase::running);
  EXPECT_TRUE(world.containerRuns);
}

TEST_F(Requests, AStopOvertakesALaunchThatStillWaits) {
  ask(Wish::launch);
  ask(Wish::stop);
  c.startMonitor();
  world.mainThread.advance(1min);
  EXPECT_EQ(answer, Answer(ExitCode::done, "The desktop is not running."));
  EXPECT_EQ(c.phase.get(), Phase::idle);
  EXPECT_FALSE(world.containerRuns);
}

TEST_F(Requests, TheStatusIsThatOfAFirstLookAtLeast) {
  startContainer();
  ask(Wish::status);
  world.mainThread.advance(1s);
  EXPECT_FALSE(answer);
  c.startMonitor();
  world.mainThread.advance(1s);
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->code, ExitCode::done);
  EXPECT_THAT(opened, IsEmpty());
}

}  // namespace
}  // namespace tarnwick
