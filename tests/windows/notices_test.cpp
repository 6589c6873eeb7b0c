#include "ui/notices/notices.h"

#include <gmock/gmock.h>

#include "tests/windows/windows_fixture.h"

namespace tarnwick {
namespace {

using Fake = FakeCommandRunner;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class RecordingNotifications final : public DesktopNotifications {
 public:
  std::vector<std::string> shown;
  Clicked click;
  int withdrawals = 0;

  void show(const std::string& title, const std::string& text, Clicked clicked) override {
    shown.push_back(title + ": " + text);
    click = std::move(clicked);
  }
  void withdraw() override { ++withdrawals; }
};

class NoticesTest : public testing::Test, public WindowsWorld {
 protected:
  NoticesTest()
      : notices(
            controller, notifications,
            [this](const std::string& token) { clicks.push_back(token); },
            [this] { return inFront; }) {
    const auto [http, https] = PortCheck::freePair(23'000);
    controller.settings.httpPort = http;
    controller.settings.httpsPort = https;
  }
  void runAndSettle() {
    settle();
    ASSERT_TRUE(runToEnd());
    settle();
  }
  void failToPull() {
    runner.on({"docker", "image", "inspect"}, Fake::failure("No such image"));
    streams.runs["pull"].lines = {{1s, "write /x: no space left on device <xyz>"}};
    streams.runs["pull"].status = 1;
  }

  bool inFront = false;
  std::vector<std::string> clicks;
  RecordingNotifications notifications;
  Notices notices;
};

TEST_F(NoticesTest, TellHowALaunchEnded) {
  controller.primary();
  runAndSettle();
  EXPECT_THAT(notifications.shown, ElementsAre("The desktop is running: Standard is ready."));
  notifications.click("token");
  EXPECT_THAT(clicks, ElementsAre("token"));

  failToPull();
  controller.startLaunch(true, false);
  runAndSettle();
  ASSERT_EQ(notifications.shown.size(), 2U);
  EXPECT_EQ(notifications.shown.back(),
            "The desktop could not start: " + controller.errorSummary.get().value());
  EXPECT_THAT(notifications.shown.back(), HasSubstr("The disk is full."));
}

TEST_F(NoticesTest, TellHowAnInstallationEnded) {
  tools.installed = {"brew"};
  streams.runs["install"].pauseBeforeEnd = 5s;
  controller.confirmInstall();
  settle();
  runner.on({"docker", "image", "inspect"}, 5s, [](const Fake::Call&) { return Fake::success(); });
  tools.installed = {"brew", "docker", "colima"};
  mainThread.advance(7s);
  settle();
  runAndSettle();
  EXPECT_THAT(notifications.shown,
              ElementsAre("Colima and Docker are installed: The desktop is being started.",
                          "The desktop is running: Standard is ready."));
  notifications.shown.clear();

  tools.installed = {"brew"};
  controller.phase = Phase::idle;
  controller.confirmInstall();
  runAndSettle();
  EXPECT_THAT(notifications.shown,
              ElementsAre("The installation failed: The installation did not finish. Open Show "
                          "details to see what Homebrew said."));
}

TEST_F(NoticesTest, SayNothingOfWhatTheUserSeesOrEnded) {
  inFront = true;
  controller.primary();
  runAndSettle();
  EXPECT_THAT(notifications.shown, IsEmpty());
  notices.attentionChanged();
  EXPECT_EQ(notifications.withdrawals, 1) << "what was told before is seen now";
  inFront = false;
  notices.attentionChanged();
  EXPECT_EQ(notifications.withdrawals, 1);

  controller.stop();
  runAndSettle();
  streams.runs["pull"].pauseBeforeEnd = 60s;
  controller.portConflict = PortConflict{"of an earlier run", 3000, "somebody", 3100, 3101};
  controller.startLaunch(true, false);
  settle();
  mainThread.advance(10s);
  controller.cancel();
  runAndSettle();
  // Found running, not launched.
  controller.phase = Phase::running;
  settle();
  EXPECT_THAT(notifications.shown, IsEmpty());
}

TEST_F(NoticesTest, TellOfAPortThatIsTaken) {
  runner.on({"docker", "info"}, 60s, [](const Fake::Call&) { return Fake::success(); });
  controller.primary();
  settle();
  controller.portConflict = PortConflict{"id", 3000, "somebody", 3100, 3101};
  controller.phase = Phase::idle;
  settle();
  EXPECT_THAT(notifications.shown,
              ElementsAre("The desktop could not start: Port 3000 is already in use."));
}

}  // namespace
}  // namespace tarnwick
