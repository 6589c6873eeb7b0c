#include "core/engine/colima_manager.h"

#include <gmock/gmock.h>

#include "tests/support/fake_command_runner.h"
#include "tests/support/fake_streaming_process.h"
#include "tests/support/fake_tool_finder.h"
#include "tests/support/run_task.h"

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Runner = FakeCommandRunner;

class ColimaManagerTest : public testing::Test {
 protected:
  bool reachable() { return runToEnd(mainThread_, colima_.dockerReachable()).value(); }
  std::int32_t install() {
    lines_.clear();
    LineCallback onLine = [this](std::string_view line) { lines_.emplace_back(line); };
    return runToEnd(mainThread_, colima_.install(stream_, std::move(onLine))).value();
  }

  VirtualMainThread mainThread_;
  Runner runner_{mainThread_};
  FakeToolFinder tools_;
  StreamScript script_;
  std::shared_ptr<StreamingProcess> stream_ =
      std::make_shared<FakeStreamingProcess>(mainThread_, script_);
  std::vector<std::string> lines_;
  ColimaManager colima_{runner_, tools_};
};

TEST_F(ColimaManagerTest, DockerIsReachableWhenItsEngineAnswersInTime) {
  runner_.on({"docker", "info"}, Runner::success());
  EXPECT_TRUE(reachable());
  EXPECT_THAT(runner_.calls.at(0).words(),
              ElementsAre("docker", "info", "--format", "{{.ServerVersion}}"));
  EXPECT_EQ(runner_.calls.at(0).timeout, 10);
  runner_.on({"docker", "info"}, CommandResult(0, "27.0", "", true));
  EXPECT_FALSE(reachable());
  runner_.on({"docker", "info"}, Runner::failure("Cannot connect to the Docker daemon"));
  EXPECT_FALSE(reachable());
  tools_.installed.erase("docker");
  EXPECT_FALSE(reachable());
  EXPECT_EQ(runner_.calls.size(), 3U);
}

TEST_F(ColimaManagerTest, StopGivesTheToolsOwnResult) {
  runner_.on({"colima"}, CommandResult(7, "out", "err", true));
  const auto result = runToEnd(mainThread_, colima_.stop());
  EXPECT_EQ(result->status, 7);
  EXPECT_EQ(result->out, "out");
  EXPECT_EQ(result->err, "err");
  EXPECT_TRUE(result->timedOut);
  EXPECT_THAT(runner_.calls.at(0).words(), ElementsAre("colima", "stop"));
  EXPECT_EQ(runner_.calls.at(0).timeout, 90);
}

TEST_F(ColimaManagerTest, StartAtLoginIsAServiceOfHomebrew) {
  runner_.on({"brew"}, Runner::success());
  EXPECT_TRUE(runToEnd(mainThread_, colima_.setStartAtLogin(true))->succeeded());
  EXPECT_TRUE(runToEnd(mainThread_, colima_.setStartAtLogin(false))->succeeded());
  EXPECT_THAT(runner_.calls.at(0).words(), ElementsAre("brew", "services", "start", "colima"));
  EXPECT_THAT(runner_.calls.at(1).words(), ElementsAre("brew", "services", "stop", "colima"));
  EXPECT_EQ(runner_.calls.at(1).timeout, 120);
}

TEST_F(ColimaManagerTest, MissingToolsAreToldWithoutRunningAnything) {
  tools_.installed = {"docker"};
  const auto stopped = runToEnd(mainThread_, colima_.stop());
  EXPECT_EQ(stopped->status, -1);
  EXPECT_EQ(stopped->combined(), "colima not found");
  const auto switched = runToEnd(mainThread_, colima_.setStartAtLogin(true));
  EXPECT_EQ(switched->status, -1);
  EXPECT_EQ(switched->combined(), "Homebrew not found");
  EXPECT_EQ(install(), -1);
  EXPECT_THAT(runner_.calls, IsEmpty());
  EXPECT_THAT(script_.calls, IsEmpty());
  EXPECT_THAT(lines_, IsEmpty());
}

TEST_F(ColimaManagerTest, InstallsExactlyWhatIsMissing) {
  EXPECT_EQ(install(), 0);
  EXPECT_THAT(script_.calls, IsEmpty());

  script_.runs["install"].lines = {{Duration(), "==> Fetching"}, {Duration(), "==> Pouring"}};
  script_.runs["install"].status = 3;
  tools_.installed = {"brew"};
  EXPECT_EQ(install(), 3);
  EXPECT_THAT(lines_, ElementsAre("==> Fetching", "==> Pouring"));
  EXPECT_EQ(script_.calls.at(0).exe, "/tools/brew");
  EXPECT_THAT(script_.calls.at(0).args, ElementsAre("install", "colima", "docker"));
  EXPECT_THAT(script_.calls.at(0).env, IsEmpty());
  tools_.installed = {"brew", "colima"};
  install();
  EXPECT_THAT(script_.calls.at(1).args, ElementsAre("install", "docker"));
  tools_.installed = {"brew", "docker"};
  install();
  EXPECT_THAT(script_.calls.at(2).args, ElementsAre("install", "colima"));

  stream_->cancel();
  EXPECT_EQ(install(), StreamingProcess::cancelledBeforeStart);
  EXPECT_THAT(lines_, IsEmpty());
}

}  // namespace
}  // namespace tarnwick
