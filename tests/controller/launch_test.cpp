#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

#include "tests/support/controller_harness.h"
#include "tests/support/listening_socket.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using Fake = FakeCommandRunner;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<StageState> states(const DesktopController& controller) {
  std::vector<StageState> result;
  for (const Stage& stage : controller.stages.get()) result.push_back(stage.state);
  return result;
}

constexpr auto pending = StageState::pending;
constexpr auto done = StageState::done;
constexpr auto failed = StageState::failed;

class Launch : public testing::Test {
 protected:
  // Free ports of this machine, so that what else runs on it does not decide.
  Launch() {
    const auto [http, https] = PortCheck::freePair(23'000);
    c.settings.httpPort = http;
    c.settings.httpsPort = https;
  }
  ControllerHarness world;
  DesktopController& c = world.controller;
};

TEST_F(Launch, WithEverythingReadyShowsTheDesktop) {
  c.primary();
  EXPECT_EQ(c.phase.get(), Phase::busy);
  EXPECT_EQ(c.statusText(), "Starting…");
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(c.phase.get(), Phase::running);
  EXPECT_TRUE(c.showDesktop.get());
  EXPECT_THAT(states(c), ElementsAre(done, done, done, done));
  EXPECT_EQ(c.settings.launchedFlavors.get(), std::vector<std::string>{"alpine-xfce"});
  EXPECT_EQ(c.statusText(), "Running (Standard)");
  EXPECT_TRUE(world.streams.calls.empty()) << "nothing was started or downloaded";
  // Answered at the first probe: no pause was made.
  EXPECT_LT(world.mainThread.now() - TimePoint(), 2s);
}

TEST_F(Launch, StartsColimaWithTheSettingsSizesAndFolder) {
  world.runner.once({"docker", "info"}, Fake::failure("Cannot connect to the Docker daemon"));
  world.streams.runs["start"].lines = {{1s, "starting colima"}, {1s, "done"}};
  c.settings.cpu = 3;
  c.settings.shareFolder = world.folder.path();
  c.primary();
  world.mainThread.advance(500ms);
  EXPECT_EQ(c.progressText.get(), "Starting Colima (the first start sets up a small Linux VM)…");
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(c.phase.get(), Phase::running);
  EXPECT_THAT(world.streams.calls.at(0).args,
              ElementsAre("start", "--cpu", "3", "--memory", "4", "--disk", "20", "--mount",
                          world.folder.path() + ":w"));
  EXPECT_EQ(c.log->text(), "starting colima\ndone\n");
}

TEST_F(Launch, ColimaThatDoesNotStartIsExplainedFromItsOutput) {
  world.runner.on({"docker", "info"}, Fake::failure());
  world.streams.runs["start"].status = 1;
  world.streams.runs["start"].lines = {{0s, "qemu: No space left on device"}};
  c.primary();
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(c.phase.get(), Phase::idle);
  EXPECT_THAT(*c.errorSummary.get(), HasSubstr("The disk is full."));
  EXPECT_THAT(states(c), ElementsAre(failed, pending, pending, pending));
  EXPECT_THAT(c.log->text(), HasSubstr("No space left"));

  // A colima that says it worked while docker still does not answer has not worked.
  world.streams.runs["start"] = {};
  c.primary();
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(c.errorSummary.get(), "Colima could not start. Open Show details for the full output.");
}

TEST_F(Launch, DownloadsWithProgressWhenTheImageIsMissingOrForced) {
  world.runner.on({"docker", "image", "inspect"}, Fake::failure());
  world.streams.runs["pull"].lines = {{1s, "a1b2c3d4e5f6: Pulling fs layer"},
                                      {1s, "b1b2c3d4e5f6: Pulling fs layer"},
                                      {1s, "a1b2c3d4e5f6: Download complete"},
                                      {1s, "a1b2c3d4e5f6: Pull complete"}};
  c.primary();
  world.mainThread.advance(500ms);
  EXPECT_EQ(c.progressText.get(), std::string("Downloading ") + ControllerHarness::image + "…");
  EXPECT_FALSE(c.progress.get());
  world.mainThread.advance(2600ms);
  EXPECT_EQ(c.progress.get(), 0.25);
  EXPECT_EQ(c.progressText.get(), "1 of 2 layers downloaded, 0 unpacked");
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(c.phase.get(), Phase::running);
  EXPECT_THAT(world.streams.calls.at(0).args, ElementsAre("pull", ControllerHarness::image));

  world.runner.on({"docker", "image", "inspect"}, Fake::success());
  c.update();
  EXPECT_FALSE(c.showDesktop.get());
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(world.streams.calls.size(), 2U);
  EXPECT_EQ(world.runner.calls.back().args.back(), "--force-recreate");
}

TEST_F(Launch, AFailedDownloadMarksItsRow) {
  world.runner.on({"docker", "image", "inspect"}, Fake::failure());
  world.streams.runs["pull"].status = 1;
  c.primary();
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(c.errorSummary.get(),
            "The image could not be downloaded. Open Show details for the full output.");
  EXPECT_THAT(states(c), ElementsAre(done, failed, pending, pending));
}

TEST_F(Launch, ATakenPortEndsTheRunWithASuggestion) {
  const ListeningSocket other;
  c.settings.httpPort = other.port();
  world.runner.on({"lsof"}, Fake::success("COMMAND PID\nnginx 1\n"));
  c.primary();
  ASSERT_TRUE(world.runToEnd());
  ASSERT_TRUE(c.portConflict.get());
  EXPECT_EQ(c.portConflict.get()->port, other.port());
  EXPECT_EQ(c.portConflict.get()->holder, "COMMAND PID\nnginx 1");
  EXPECT_FALSE(c.errorSummary.get());
  EXPECT_THAT(states(c), ElementsAre(pending, pending, pending, pending));
  EXPECT_EQ(world.runner.count({"docker", "compose", "-p"}), 0U);

  const std::int64_t suggested = c.portConflict.get()->suggestedHTTP;
  c.useSuggestedPorts();
  EXPECT_FALSE(c.portConflict.get());
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(c.phase.get(), Phase::running);
  EXPECT_EQ(world.store.integer("httpPort"), suggested);
}

TEST_F(Launch, APortOutsideTheRangeCountsAsTakenAndARunningContainerHoldsItsOwn) {
  c.settings.httpsPort = 70'000;
  c.primary();
  ASSERT_TRUE(world.runToEnd());
  ASSERT_TRUE(c.portConflict.get());
  EXPECT_EQ(c.portConflict.get()->port, 70'000);
  c.dismissPortConflict();

  const ListeningSocket own;
  c.settings.httpPort = own.port();
  c.settings.httpsPort = 23'001;
  world.container = ControllerHarness::image;
  world.containerRuns = true;
  c.primary();
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(c.phase.get(), Phase::running);
}

TEST_F(Launch, ThePasswordReachesOnlyTheCommandThatCreatesTheContainer) {
  world.secrets.put(SettingsStore::passwordAccount, "s3cret");
  world.mainThread.advance(1s);
  c.settings.setRequirePassword(true);
  world.mainThread.advance(1s);
  const std::string password = c.settings.password.get();
  ASSERT_FALSE(password.empty());
  c.primary();
  ASSERT_TRUE(world.runToEnd());
  for (const auto& call : world.runner.calls) {
    EXPECT_THAT(call.args, Not(Contains(HasSubstr(password))));
    const bool creates = call.args.size() > 2 && call.args[1] == "-p";
    EXPECT_EQ(call.env, creates ? (Environment{{"CUSTOM_USER", "linux"}, {"PASSWORD", password}})
                                : Environment());
  }
  std::ifstream file(world.paths.supportDir() + "/compose-alpine-xfce.yml");
  std::stringstream text;
  text << file.rdbuf();
  EXPECT_THAT(text.str(), HasSubstr("- PASSWORD\n"));
  EXPECT_THAT(text.str(), Not(HasSubstr(password)));
}

TEST_F(Launch, AContainerThatFailsIsExplainedAndItsOutputKept) {
  world.runner.on({"docker", "compose", "-p"}, Fake::failure("Error: port is already allocated"));
  c.primary();
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(c.errorSummary.get(),
            "A network port is already in use by another program. Choose other ports in Settings.");
  EXPECT_THAT(states(c), ElementsAre(done, done, failed, pending));
  EXPECT_THAT(c.log->text(), HasSubstr("already allocated\n"));
}

TEST_F(Launch, ADesktopThatNeverAnswersFailsAfterFourMinutesWithTheContainersLog) {
  world.httpProbe.answer = [] { return std::optional<int>(503); };
  c.primary();
  ASSERT_TRUE(world.runToEnd());
  EXPECT_THAT(*c.errorSummary.get(), HasSubstr("The desktop did not answer in time."));
  EXPECT_THAT(c.log->text(), HasSubstr("container says hello"));
  const auto took = world.mainThread.now() - TimePoint();
  EXPECT_GE(took, 240s);
  EXPECT_LT(took, 245s);
}

TEST_F(Launch, AContainerThatDiesIsNotWaitedFor) {
  world.httpProbe.answer = [this] {
    world.containerRuns = false;
    return std::optional<int>();
  };
  c.primary();
  ASSERT_TRUE(world.runToEnd());
  EXPECT_TRUE(c.errorSummary.get());
  EXPECT_EQ(world.httpProbe.asked.size(), 5U);
  EXPECT_LT(world.mainThread.now() - TimePoint(), 15s);
}

TEST_F(Launch, MissingToolsOfferTheInstallOrNameHomebrew) {
  world.tools.installed = {"docker", "brew"};
  c.primary();
  EXPECT_TRUE(c.askInstall.get());
  EXPECT_EQ(c.phase.get(), Phase::idle);

  world.tools.installed = {"colima"};
  c.dismissInstallOffer();
  c.primary();
  EXPECT_FALSE(c.askInstall.get());
  EXPECT_THAT(world.workspace.openedUrls, ElementsAre("https://brew.sh/"));
  EXPECT_EQ(c.notice.get(),
            "Homebrew is needed to install Colima and Docker. The page brew.sh is open in your "
            "browser; this app never installs Homebrew itself.");
}

TEST_F(Launch, ASecondStartWhileBusyChangesNothing) {
  world.runner.once({"docker", "info"}, Fake::success(), 5s);
  c.primary();
  world.mainThread.advance(1s);
  c.startLaunch(true, true);
  c.primary();
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(world.runner.count({"docker", "info"}), 1U);
  EXPECT_TRUE(world.streams.calls.empty());
}

TEST_F(Launch, APortThatTheViewRefusesIsSaidInsteadOfAnEmptyWindow) {
  c.settings.httpsPort = 6666;
  c.primary();
  ASSERT_TRUE(world.runToEnd());
  EXPECT_EQ(c.phase.get(), Phase::running);
  EXPECT_FALSE(c.showDesktop.get());
  EXPECT_THAT(*c.notice.get(), HasSubstr("cannot open port 6666"));
}

}  // namespace
}  // namespace tarnwick
