#include <gmock/gmock.h>

#include "core/diagnostics/redaction.h"
#include "core/diagnostics/report.h"
#include "tests/support/controller_harness.h"
#include "tests/support/run_task.h"

namespace tarnwick {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(RedactionTest, HidesHomeUserAndSecretsAndNothingElse) {
  const Redaction redaction("/home/anna/", {"s3cr3t", ""});
  const struct {
    const char* given;
    const char* shown;
  } cases[] = {
      {"/home/anna/Documents, /home/annabel, anna's annals",
       "~/Documents, /home/annabel, (user)'s annals"},
      {"for anna (anna) at the end anna", "for (user) ((user)) at the end (user)"},
      {"it is s3cr3t, xs3cr3ty", "it is (secret), x(secret)y"},
      {"PASSWORD=hunter2 CUSTOM_USER=abc", "PASSWORD=(secret) CUSTOM_USER=abc"},
      {"Api-Token: abc\nnext: line", "Api-Token: (secret)\nnext: line"},
      {"PASSWORD=", "PASSWORD="},
      {"http://bob:pw@proxy:3128/x and https://127.0.0.1:3001/a@b",
       "http://(secret)@proxy:3128/x and https://127.0.0.1:3001/a@b"},
      {"12:30:45 a=b: c", "12:30:45 a=b: c"},
      {"", ""},
  };
  for (const auto& each : cases) EXPECT_EQ(redaction.apply(each.given), each.shown);
  EXPECT_EQ(Redaction("/root", {}).apply("root of /root/x"), "root of ~/x");
  EXPECT_EQ(Redaction("/", {}).apply("/a"), "/a");
}

class ReportTest : public testing::Test {
 protected:
  std::string report() {
    DiagnosticSources sources{world_.controller, world_.runner, world_.tools, world_.folder.path()};
    Facts facts = {{"Tarnwick", "9.8.7"}};
    return runToEnd(world_.mainThread, diagnosticReport(std::move(sources), std::move(facts)))
        .value_or("");
  }

  ControllerHarness world_;
};

TEST_F(ReportTest, TellsToolsSettingsStateAndLogWithoutThePassword) {
  using Fake = FakeCommandRunner;
  world_.runner.on({"colima", "version"}, Fake::success("colima version 0.6.9\ngit commit: x\n"));
  world_.runner.on({"docker", "--version"}, Fake::failure("no such option"));
  world_.controller.settings.setRequirePassword(true);
  world_.controller.settings.shareFolder = world_.folder.path() + "/shared";
  world_.mainThread.advance(std::chrono::seconds(5));
  const std::string password = world_.controller.settings.password.get();
  ASSERT_FALSE(password.empty());
  world_.runner.on({"docker", "compose", "-p"}, Fake::failure("cannot use " + password));
  world_.runner.on({"docker", "run"}, Fake::failure("cannot use " + password));
  world_.controller.startLaunch(false, false);
  ASSERT_TRUE(world_.runToEnd());

  const std::string text = report();

  EXPECT_THAT(text, HasSubstr("Tarnwick: 9.8.7\n"));
  EXPECT_THAT(text, HasSubstr("colima: colima version 0.6.9 ("));
  EXPECT_THAT(text, HasSubstr("docker: failed with status 1: no such option ("));
  EXPECT_THAT(text, HasSubstr("Shared folder: ~/shared\n"));
  EXPECT_THAT(text, HasSubstr("Password protection: yes\n"));
  EXPECT_THAT(text, HasSubstr("Error: "));
  EXPECT_THAT(text, HasSubstr("cannot use (secret)"));
  EXPECT_THAT(text, Not(HasSubstr(password)));
  EXPECT_THAT(text, Not(HasSubstr(world_.folder.path())));
}

TEST_F(ReportTest, ToolsThatAreMissingOrSilentAreSaidSo) {
  world_.tools.installed.erase("colima");
  world_.runner.on({"docker", "info"}, FakeCommandRunner::timeOut());
  const std::string text = report();
  EXPECT_THAT(text, HasSubstr("colima: not found\n"));
  EXPECT_THAT(text, HasSubstr("engine: does not answer ("));
  EXPECT_THAT(text, HasSubstr("## Last lines of the log\n\n(empty)\n"));
}

}  // namespace
}  // namespace tarnwick
