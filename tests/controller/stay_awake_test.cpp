#include "core/controller/stay_awake.h"

#include <gtest/gtest.h>
#include <optional>

#include "tests/support/controller_harness.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using Fake = FakeCommandRunner;

class CountingInhibitor final : public SleepInhibitor {
 public:
  bool refuses = false;
  int asked = 0;
  int held = 0;

  Hold hold(const std::string&) override {
    ++asked;
    if (refuses) return nullptr;
    ++held;
    return {&held, [](int* count) { --*count; }};
  }
};

class StayAwakeTest : public testing::Test {
 protected:
  StayAwakeTest() {
    const auto [http, https] = PortCheck::freePair(23'000);
    c.settings.httpPort = http;
    c.settings.httpsPort = https;
    world.runner.once({"docker", "info"}, Fake::failure("Cannot connect to the Docker daemon"));
    world.streams.runs["start"].pauseBeforeEnd = 10s;
    world.runner.on({"docker", "image", "inspect"}, Fake::failure("No such image"));
    StreamScript::Run& pull = world.streams.runs["pull"];
    for (int i = 0; i < 20; ++i) pull.lines.emplace_back(1s, "a1b2c3d4e5f6: Pull complete");
    awake.emplace(c, inhibitor, world.workers, world.mainThread);
  }
  void advance(Duration time) { world.mainThread.advance(time); }

  ControllerHarness world;
  DesktopController& c = world.controller;
  CountingInhibitor inhibitor;
  std::optional<StayAwake> awake;
};

TEST_F(StayAwakeTest, OnlyWhileAnImageIsDownloading) {
  c.primary();
  advance(9s);
  EXPECT_EQ(inhibitor.held, 0) << "Colima starts";
  advance(5s);
  EXPECT_EQ(inhibitor.held, 1);
  ASSERT_TRUE(world.runToEnd());
  advance(0s);
  EXPECT_EQ(c.phase.get(), Phase::running);
  EXPECT_EQ(inhibitor.held, 0);
  EXPECT_EQ(inhibitor.asked, 1);
}

TEST_F(StayAwakeTest, EndsWithAFailureACancelOrTheProgram) {
  for (const char* way : {"failure", "cancel", "program"}) {
    world.streams.runs["pull"].status = 1;
    c.startLaunch(true, false);
    advance(15s);
    EXPECT_EQ(inhibitor.held, 1) << way;
    if (std::string(way) == "cancel") c.cancel();
    if (std::string(way) == "program") awake.reset();
    advance(std::string(way) == "failure" ? 60s : 0s);
    EXPECT_EQ(inhibitor.held, 0) << way;
  }
}

TEST_F(StayAwakeTest, AnAnswerThatComesTooLateIsLetGoOf) {
  world.workers.delay = 40s;
  c.primary();
  ASSERT_TRUE(world.runToEnd());
  advance(60s);
  EXPECT_EQ(inhibitor.asked, 1);
  EXPECT_EQ(inhibitor.held, 0);
}

TEST_F(StayAwakeTest, WhoRefusesIsAskedOnceForEachDownload) {
  inhibitor.refuses = true;
  c.primary();
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(inhibitor.asked, 1);
  inhibitor.refuses = false;
  c.startLaunch(true, false);
  advance(5s);
  EXPECT_EQ(inhibitor.held, 1);
}

}  // namespace
}  // namespace tarnwick
