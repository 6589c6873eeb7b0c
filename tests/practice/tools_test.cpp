#include <fstream>
#include <gmock/gmock.h>
#include <map>
#include <regex>
#include <signal.h>
#include <thread>

#include "rig.h"

namespace tarnwick::practice::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::StartsWith;

class Tools : public Rig {};

TEST_F(Tools, DaemonIsUnreachableUntilColimaHasStarted) {
  const Outcome before = docker({"info", "--format", "{{.ServerVersion}}"});
  EXPECT_EQ(before.status, 1);
  EXPECT_EQ(before.out, "");
  EXPECT_THAT(before.err, StartsWith("Cannot connect to the Docker daemon at unix://"));
  EXPECT_THAT(before.err, HasSubstr("Is the docker daemon running?"));
  EXPECT_EQ(docker({"pull", kImage}).status, 1);
  EXPECT_EQ(docker(runArguments()).status, 125);

  const Outcome start =
      run("colima", {"start", "--cpu", "2", "--memory", "4", "--disk", "60", "--mount", "/srv:w"});
  EXPECT_EQ(start.status, 0);
  EXPECT_THAT(start.err,
              StartsWith("Practice engine: nothing is really installed or downloaded.\n"));
  EXPECT_THAT(start.err, HasSubstr("level=info msg=\"starting colima\"\n"));
  EXPECT_EQ(docker({"info", "--format", "{{.ServerVersion}}"}).status, 0);
  EXPECT_THAT(run("colima", {"start"}).err, HasSubstr("already running"));
}

TEST_F(Tools, PullFollowsTheGrammarAndIsRemembered) {
  ASSERT_EQ(run("colima", {"start"}).status, 0);
  EXPECT_EQ(docker({"image", "inspect", kImage}).status, 1);
  const Outcome pull = docker({"pull", kImage});
  ASSERT_EQ(pull.status, 0);
  const std::vector<std::string> lines = linesOf(pull.out);
  ASSERT_GT(lines.size(), 6U);
  EXPECT_EQ(lines[0], "Practice engine: nothing is really installed or downloaded.");
  EXPECT_EQ(lines[1], "latest: Pulling from linuxserver/webtop");

  const std::map<std::string, int> stages = {{"Pulling fs layer", 0},
                                             {"Waiting", 0},
                                             {"Verifying Checksum", 1},
                                             {"Download complete", 2},
                                             {"Pull complete", 3}};
  std::map<std::string, int> layers;
  bool waited = false;
  for (std::size_t i = 2; i + 3 < lines.size(); ++i) {
    std::smatch match;
    ASSERT_TRUE(std::regex_match(lines[i], match, std::regex("([0-9a-f]{12}): (.*)"))) << lines[i];
    ASSERT_TRUE(stages.contains(match[2])) << lines[i];
    const int stage = stages.at(match[2]);
    waited = waited || match[2] == "Waiting";
    EXPECT_GE(stage, layers[match[1]]) << lines[i];
    layers[match[1]] = stage;
  }
  EXPECT_TRUE(waited);
  EXPECT_GE(layers.size(), 5U);
  for (const auto& [layer, stage] : layers) EXPECT_EQ(stage, 3) << layer;
  EXPECT_TRUE(std::regex_match(lines[lines.size() - 3], std::regex("Digest: sha256:[0-9a-f]{64}")));
  EXPECT_EQ(lines[lines.size() - 2], std::string("Status: Downloaded newer image for ") + kImage);

  EXPECT_EQ(docker({"image", "inspect", kImage}).status, 0);
  EXPECT_THAT(docker({"pull", kImage}).out, HasSubstr("Status: Image is up to date for"));
  EXPECT_THAT(docker({"pull", "lscr.io/linuxserver/webtop:ubuntu-kde"}).out,
              HasSubstr("Already exists"));
}

TEST_F(Tools, EndAtOnceOnSigterm) {
  ASSERT_EQ(run("colima", {"start"}).status, 0);
  const Environment slow = {{"TARNWICK_PRACTICE_PACE", "50"}};
  const pid_t pids[] = {start("docker", {"pull", kImage}, slow), start("colima", {"stop"}, slow),
                        start("brew", {"services", "start", "colima"}, slow)};
  std::this_thread::sleep_for(200ms);
  for (const pid_t pid : pids) {
    EXPECT_FALSE(ended(pid, 0ms));
    ::kill(pid, SIGTERM);
    EXPECT_EQ(ended(pid, 2s), 143);
  }
  EXPECT_EQ(docker({"image", "inspect", kImage}).status, 1);
  EXPECT_EQ(docker({"info"}).status, 0);
}

TEST_F(Tools, RefuseWhatTheyDoNotKnow) {
  ASSERT_EQ(run("colima", {"start"}).status, 0);
  const struct {
    const char* tool;
    Words arguments;
    int status;
    const char* text;
  } cases[] = {
      {"docker", {"frobnicate"}, 1, "unknown command: docker frobnicate"},
      {"docker", {"--frob"}, 125, "unknown flag: --frob"},
      {"docker", {"run", "-d", "--frob", "image"}, 125, "unknown flag: --frob"},
      {"docker", {"run", "-d", "--name"}, 125, "flag needs an argument"},
      {"docker",
       {"run", "-d", "--name", "tarnwick", "-p", "0.0.0.0:1:3000", "i"},
       125,
       "127.0.0.1"},
      {"docker", {"pull"}, 1, "requires 1 argument"},
      {"docker", {"pull", "--all"}, 1, "unknown flag: --all"},
      {"docker", {"stop", "tarnwick"}, 1, "No such container: tarnwick"},
      {"docker", {"inspect", "-f", kInspectFormat, "tarnwick"}, 1, "No such object: tarnwick"},
      {"docker", {"logs", "--tail", "5", "tarnwick"}, 1, "No such container: tarnwick"},
      {"docker", {"volume", "rm", "../volumes"}, 1, "No such volume"},
      {"docker", {"compose", "down"}, 1, "unknown command: down"},
      {"docker", {"compose", "-f", "/nowhere.yml", "up", "-d"}, 1, "no such file"},
      {"colima", {"start", "--frob", "1"}, 1, "unknown flag: --frob"},
      {"colima", {"start", "--cpu", "many"}, 1, "invalid argument \"many\""},
      {"colima", {"frobnicate"}, 1, "unknown command"},
      {"brew", {"install", "frob"}, 1, "No available formula with the name \"frob\""},
      {"brew", {"frobnicate"}, 1, "Unknown command"},
  };
  for (const auto& each : cases) {
    const Outcome outcome = run(each.tool, each.arguments);
    EXPECT_EQ(outcome.status, each.status) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr(each.text));
  }
}

TEST_F(Tools, BrewInstallsBesideItself) {
  for (const char* tool : {"docker", "colima"}) std::filesystem::remove(tools_ / tool);
  const Outcome install = run("brew", {"install", "colima", "docker"});
  ASSERT_EQ(install.status, 0) << install.err;
  EXPECT_THAT(install.out, StartsWith("Practice engine: nothing is really installed"));
  EXPECT_EQ(run("colima", {"version"}).status, 0);
  EXPECT_THAT(docker({"--version"}).out, StartsWith("Docker version "));
  EXPECT_THAT(run("brew", {"install", "docker"}).err, HasSubstr("already installed"));
  EXPECT_EQ(run("brew", {"services", "start", "colima"}).status, 0);
  EXPECT_EQ(run("brew", {"services", "stop", "colima"}).status, 0);
}

TEST_F(Tools, KeepTheirStateWholeWhenManyRunAtOnce) {
  ASSERT_EQ(run("colima", {"start"}).status, 0);
  std::vector<pid_t> pids;
  const auto composed = composeFile(false).string();
  for (int i = 0; i < 24; ++i) {
    pids.push_back(start("docker", {"pull", "lscr.io/linuxserver/webtop:t" + std::to_string(i)}));
    pids.push_back(start("docker", {"compose", "-p", "tarnwick", "-f", composed, "up", "-d"}));
    pids.push_back(start("docker", {"image", "inspect", "nothing"}));
  }
  for (std::size_t i = 0; i < pids.size(); ++i) {
    EXPECT_EQ(ended(pids[i], 20s), i % 3 == 2 ? 1 : 0) << i;
  }
  for (int i = 0; i < 24; ++i) {
    const std::string image = "lscr.io/linuxserver/webtop:t" + std::to_string(i);
    EXPECT_EQ(docker({"image", "inspect", image}).status, 0) << image;
  }
  EXPECT_TRUE(running());
  EXPECT_EQ(statusOfPage(), 200);
}

TEST_F(Tools, SayThatTheirStateIsDamagedAndBeginAnewOnReset) {
  ASSERT_EQ(run("colima", {"start"}).status, 0);
  std::ofstream(state_ / "state.json") << "{\"engineUp\": tr";
  const Outcome outcome = docker({"info"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, HasSubstr("state.json is damaged"));
  EXPECT_EQ(docker({"practice", "reset"}).status, 0);
  EXPECT_EQ(run("colima", {"start"}).status, 0);
  EXPECT_EQ(docker({"info"}).status, 0);
}

}  // namespace
}  // namespace tarnwick::practice::test
