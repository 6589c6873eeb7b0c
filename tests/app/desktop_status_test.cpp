#include "app/desktop_status.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/controller_harness.h"

namespace tarnwick {
namespace {

using testing::HasSubstr;

class Status : public testing::Test {
 protected:
  std::string line() const { return statusLine(statusOf(c)); }
  ExitCode code() const { return statusAnswer(statusOf(c), Wish::status).code; }

  ControllerHarness world;
  DesktopController& c = world.controller;
};

TEST_F(Status, OfADesktopThatIsDown) {
  EXPECT_EQ(line(), "Stopped.");
  c.notice = "Cancelled.";
  EXPECT_EQ(line(), "Stopped: Cancelled.");
  c.errorSummary = "Colima could not start.";
  EXPECT_EQ(line(), "Stopped: Colima could not start.");
  c.portConflict = PortConflict{"id", 3000, "nginx", 3100, 3101};
  EXPECT_EQ(line(), "Stopped: Port 3000 is already in use.");
  EXPECT_EQ(code(), ExitCode::notRunning);
}

TEST_F(Status, OfOneOnItsWay) {
  c.phase = Phase::busy;
  EXPECT_EQ(line(), "Starting…");
  c.progressText = "Checking Colima…";
  EXPECT_EQ(line(), "Starting: Checking Colima…");
  c.installing = true;
  EXPECT_EQ(line(), "Installing: Checking Colima…");
  EXPECT_EQ(code(), ExitCode::notRunning);
}

TEST_F(Status, OfARunningOne) {
  c.phase = Phase::running;
  c.settings.flavorID = "ubuntu-xfce";
  EXPECT_EQ(line(), "The desktop is running (XFCE on Ubuntu, https://127.0.0.1:3001/).");
  EXPECT_EQ(code(), ExitCode::done);
  c.settings.httpsPort = 70'000;
  EXPECT_EQ(line(), "The desktop is running (XFCE on Ubuntu).");
  c.isStopping = true;
  EXPECT_EQ(line(), "Stopping…");
  EXPECT_EQ(code(), ExitCode::notRunning);
}

TEST_F(Status, ForProgramsIsOneLineWithoutAnySecret) {
  c.phase = Phase::running;
  c.settings.setRequirePassword(true);
  world.mainThread.advance(std::chrono::seconds(10));
  ASSERT_TRUE(c.settings.activePassword());
  c.notice = "say \"hi\"\n\xff";
  const Answer answer = statusAnswer(statusOf(c), Wish::statusJson);
  EXPECT_THAT(answer.text, HasSubstr(R"("phase":"running","flavor":"alpine-xfce")"));
  EXPECT_THAT(answer.text, HasSubstr(R"("httpPort":3000,"httpsPort":3001)"));
  EXPECT_THAT(answer.text, HasSubstr(R"("url":"https://127.0.0.1:3001/")"));
  EXPECT_THAT(answer.text, HasSubstr(R"("message":"say \"hi\"\n)"));
  EXPECT_EQ(answer.text.find('\n'), std::string::npos);
  EXPECT_EQ(answer.text.find(*c.settings.activePassword()), std::string::npos);
}

}  // namespace
}  // namespace tarnwick
