#include "core/engine/docker.h"

#include <gmock/gmock.h>

#include "tests/support/fake_command_runner.h"
#include "tests/support/fake_tool_finder.h"
#include "tests/support/run_task.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Runner = FakeCommandRunner;

class DockerTest : public testing::Test {
 protected:
  bool imageExists() {
    return runToEnd(mainThread_, docker_.imageExists("host/image:tag")).value();
  }
  std::optional<ContainerInfo> containerInfo() {
    return runToEnd(mainThread_, docker_.containerInfo()).value();
  }
  std::optional<ComposeInvocation> compose() {
    return runToEnd(mainThread_, docker_.composeInvocation()).value();
  }
  std::string logs(int tail) { return runToEnd(mainThread_, docker_.logs(tail)).value(); }

  /// The only command since the last look.
  Runner::Call onlyCall() {
    EXPECT_EQ(runner_.calls.size(), 1U);
    return std::exchange(runner_.calls, {}).at(0);
  }

  VirtualMainThread mainThread_;
  Runner runner_{mainThread_};
  FakeToolFinder tools_;
  Docker docker_{runner_, tools_};
};

TEST_F(DockerTest, WithoutDockerNothingRuns) {
  tools_.installed = {"docker-compose", "colima"};
  EXPECT_FALSE(imageExists());
  EXPECT_FALSE(containerInfo().has_value());
  EXPECT_FALSE(compose().has_value());
  EXPECT_EQ(logs(40), "Docker is not installed.");
  EXPECT_THAT(runner_.calls, IsEmpty());
}

TEST_F(DockerTest, AnImageExistsExactlyWhenItsInspectionSucceeds) {
  runner_.on({"docker", "image", "inspect"}, Runner::success());
  EXPECT_TRUE(imageExists());
  const Runner::Call call = onlyCall();
  EXPECT_EQ(call.exe, "/tools/docker");
  EXPECT_THAT(call.args, ElementsAre("image", "inspect", "host/image:tag"));
  EXPECT_EQ(call.timeout, 10);
  EXPECT_THAT(call.env, IsEmpty());
  runner_.on({"docker"}, Runner::failure("No such image"));
  EXPECT_FALSE(imageExists());
  runner_.on({"docker"}, CommandResult(0, "[]", "", true));
  EXPECT_FALSE(imageExists()) << "a time-out is a failure, whatever the status";
}

TEST_F(DockerTest, ContainerInfoReadsStandardOutputAlone) {
  runner_.on({"docker", "inspect"},
             Runner::success("true|host/linuxserver/webtop:latest\n", "w|w"));
  const auto info = containerInfo();
  ASSERT_TRUE(info.has_value());
  EXPECT_TRUE(info->running);
  EXPECT_EQ(info->image, "host/linuxserver/webtop:latest");
  const Runner::Call call = onlyCall();
  EXPECT_THAT(call.args,
              ElementsAre("inspect", "-f", "{{.State.Running}}|{{.Config.Image}}", "tarnwick"));
  EXPECT_EQ(call.timeout, 10);
  runner_.on({"docker"}, CommandResult(1, "true|image", "", false));
  EXPECT_FALSE(containerInfo().has_value());
  runner_.on({"docker"}, CommandResult(0, "true|image", "", true));
  EXPECT_FALSE(containerInfo().has_value());
}

TEST(ParseContainerInfo, OnlyExactlyTwoPiecesAndTheExactWordCount) {
  for (const char* stopped : {"false|i", "True|i", "|i", " true |i", "trueish|i"}) {
    const auto info = parseContainerInfo(stopped);
    ASSERT_TRUE(info.has_value()) << stopped;
    EXPECT_FALSE(info->running) << stopped;
    EXPECT_EQ(info->image, "i");
  }
  for (const char* unexpected : {"", "\n", "true", "true|a|b", "||", "no value"}) {
    EXPECT_FALSE(parseContainerInfo(unexpected).has_value()) << unexpected;
  }
  const auto bare = parseContainerInfo("\r\n\t true| \n");
  ASSERT_TRUE(bare.has_value());
  EXPECT_TRUE(bare->running);
  EXPECT_EQ(bare->image, "");
}

TEST_F(DockerTest, ComposeIsThePluginElseTheSeparateToolElseNone) {
  tools_.installed.insert("docker-compose");
  runner_.on({"docker", "compose", "version"}, Runner::success("v2.39.4"));
  auto found = compose();
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->exe, "/tools/docker");
  EXPECT_THAT(found->prefix, ElementsAre("compose"));
  EXPECT_EQ(onlyCall().timeout, 10);

  runner_.on({"docker", "compose"}, Runner::failure("docker: 'compose' is not a docker command."));
  found = compose();
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->exe, "/tools/docker-compose");
  EXPECT_THAT(found->prefix, IsEmpty());

  tools_.installed.erase("docker-compose");
  EXPECT_FALSE(compose().has_value());
}

TEST_F(DockerTest, LogsAreAlwaysTextToShow) {
  runner_.on({"docker", "logs"}, Runner::success("out\n", "err\n"));
  EXPECT_EQ(logs(300), "out\n\nerr\n");
  const Runner::Call call = onlyCall();
  EXPECT_THAT(call.args, ElementsAre("logs", "--tail", "300", "tarnwick"));
  EXPECT_EQ(call.timeout, 15);
  runner_.on({"docker"}, Runner::success());
  EXPECT_EQ(logs(40), "(no output yet)");
  runner_.on({"docker"}, Runner::failure("Error: No such container: tarnwick"));
  EXPECT_EQ(logs(40), "Error: No such container: tarnwick");
  runner_.on({"docker"}, Runner::failure());
  EXPECT_EQ(logs(40), "Could not read logs (is the desktop created yet?)");
  runner_.on({"docker"}, CommandResult(0, "", "", true));
  EXPECT_EQ(logs(40), "Could not read logs (is the desktop created yet?)");
}

Task<void> askForLogs(Docker& docker, std::string& text) {
  std::string answer = co_await docker.logs(1);
  text = std::move(answer);
}
Task<void> askForInfo(Docker& docker, bool& running) {
  const auto info = co_await docker.containerInfo();
  running = info.has_value() && info->running;
}

TEST_F(DockerTest, QuestionsMayOverlap) {
  runner_.on({"docker", "logs"}, 15s, Runner::always(Runner::success("late")));
  runner_.on({"docker", "inspect"}, 1s, Runner::always(Runner::success("true|i")));
  TaskScope scope(mainThread_);
  std::string text;
  bool running = false;
  scope.start(askForLogs(docker_, text));
  scope.start(askForInfo(docker_, running));
  mainThread_.advance(1s);
  EXPECT_TRUE(running);
  EXPECT_EQ(text, "");
  mainThread_.advance(14s);
  EXPECT_EQ(text, "late");
}

}  // namespace
}  // namespace tarnwick
