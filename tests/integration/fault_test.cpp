#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "practice_world.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

struct FaultCase {
  const char* fault;
  const char* sentence;
};

std::ostream& operator<<(std::ostream& out, const FaultCase& fault) {
  return out << fault.fault;
}

class FailingLaunch : public testing::TestWithParam<FaultCase> {};

TEST_P(FailingLaunch, IsOnePlainSentenceAndTheNextOneWorks) {
  PracticeWorld world;
  DesktopController& c = world.controller;
  world.orderFaults(GetParam().fault);
  ASSERT_TRUE(world.launch());
  EXPECT_EQ(c.phase.get(), Phase::idle);
  EXPECT_EQ(c.errorSummary.get(), GetParam().sentence) << c.log->text();
  world.orderFaults("");
  ASSERT_TRUE(world.launch());
  EXPECT_EQ(c.phase.get(), Phase::running) << c.log->text();
}

constexpr const char* noAnswer =
    "The desktop did not answer in time. Open Show details, or the Logs window, to see why.";

INSTANTIATE_TEST_SUITE_P(
    Faults, FailingLaunch,
    testing::Values(
        FaultCase{"colima-start-fails",
                  "Colima could not start. Open Show details for the full output."},
        FaultCase{"daemon-unreachable",
                  "Colima could not start. Open Show details for the full output."},
        FaultCase{"docker-crashes",
                  "Colima could not start. Open Show details for the full output."},
        FaultCase{
            "pull-disk-full",
            "The disk is full. Free some space, or give Colima a bigger disk, and try again."},
        FaultCase{"pull-no-network",
                  "No internet connection to download from. Check your network and try again."},
        FaultCase{"pull-manifest-unknown",
                  "The image or tag was not found. It may have been renamed. Try another flavor."},
        FaultCase{"compose-fails",
                  "The desktop container could not start. Open Show details for the full output."},
        FaultCase{"compose-missing\nrun-fails",
                  "The desktop container could not start. Open Show details for the full output."},
        FaultCase{
            "port-in-use",
            "A network port is already in use by another program. Choose other ports in Settings."},
        FaultCase{"container-dies\ndesktop-answers-500", noAnswer}),
    [](const auto& tested) {
      std::string name = tested.param.fault;
      std::replace_if(
          name.begin(), name.end(), [](char c) { return c == '-' || c == '\n'; }, '_');
      return name;
    });

TEST(OddTools, AreLivedWith) {
  for (const char* fault : {"compose-name-in-use-once", "colima-holds-pipe", "pull-invalid-utf8",
                            "pull-long-line", "compose-asks"}) {
    PracticeWorld world;
    world.orderFaults(fault);
    ASSERT_TRUE(world.launch()) << fault;
    const bool asks = std::string(fault) == "compose-asks";
    EXPECT_EQ(world.controller.phase.get(), asks ? Phase::idle : Phase::running)
        << fault << "\n"
        << world.controller.log->text().substr(0, 2'000);
  }
}

TEST(OddTools, HangingOnesAreCancelledAtOnce) {
  for (const char* fault : {"colima-start-hangs", "pull-hangs"}) {
    PracticeWorld world;
    DesktopController& c = world.controller;
    world.orderFaults(fault);
    c.primary();
    // Until the tool has shown that it runs.
    ASSERT_TRUE(world.mainThread.runUntil(
        [&c, fault] {
          return std::string(fault) == "pull-hangs" ? c.progress.get().has_value()
                                                    : !c.log->empty();
        },
        20s))
        << fault;
    c.cancel();
    const TimePoint pressed = Clock::now();
    ASSERT_TRUE(world.waitUntilSettled());
    EXPECT_LT(Clock::now() - pressed, 5s) << fault;
    EXPECT_EQ(c.notice.get(), "Cancelled.");
  }
}

std::size_t residentKilobytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmRSS:")) return std::stoul(line.substr(6));
  }
  return 0;
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif

TEST(OddTools, AFloodNeitherFillsTheMemoryNorBlocksTheMainThread) {
  if (sanitized) GTEST_SKIP() << "a sanitizer keeps freed memory, and slows every turn down";
  PracticeWorld world;
  world.orderFaults("pull-floods");
  const std::size_t before = residentKilobytes();
  ASSERT_TRUE(world.launch());
  EXPECT_EQ(world.controller.phase.get(), Phase::running);
  EXPECT_LT(residentKilobytes(), before + 30 * 1024);
  EXPECT_LT(world.mainThread.longestTurn(), 50ms);
}

}  // namespace
}  // namespace tarnwick
