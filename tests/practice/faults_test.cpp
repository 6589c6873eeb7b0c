#include "practice/faults.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <signal.h>
#include <thread>
#include <unistd.h>

#include "practice/console.h"
#include "rig.h"

namespace tarnwick::practice::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

class FaultsOrdered : public Rig {
 protected:
  static Environment with(const std::string& faults) {
    return {{"TARNWICK_PRACTICE_FAULTS", faults}};
  }

  /// Starts a tool that is to hang, and waits until it does.
  pid_t startHanging(const std::string& tool, const Words& arguments, const std::string& faults) {
    const pid_t pid = start(tool, arguments, with(faults));
    const auto end = std::chrono::steady_clock::now() + 20s;
    while (!std::filesystem::exists(hangingMark(state_, pid))) {
      if (ended(pid, 10ms) || std::chrono::steady_clock::now() > end) {
        ADD_FAILURE() << tool << " does not hang with " << faults;
        break;
      }
    }
    return pid;
  }

  Words composeUp() const {
    return {"compose", "-p", "tarnwick", "-f", composeFile(false).string(), "up", "-d"};
  }
};

TEST_F(FaultsOrdered, EveryNameIsAcceptedAndDocumented) {
  const std::string readme = readFile(PRACTICE_README);
  const std::string listed = "\n" + docker({"practice", "faults"}).out;
  ASSERT_GE(knownFaults().size(), 30U);
  std::string all;
  for (const FaultEntry& entry : knownFaults()) {
    const std::string name(entry.name);
    EXPECT_EQ(faultNamed(name), entry.fault);
    EXPECT_THAT(listed, HasSubstr("\n" + name + " "));
    EXPECT_THAT(readme, HasSubstr("| `" + name + "` | " + std::string(entry.effect) + " |"));
    all += name + ",";
  }
  EXPECT_EQ(run("brew", {"--version"}, with(all)).status, 0);
  const Outcome unknown = run("brew", {"--version"}, with("brew-fails,no-such-fault"));
  EXPECT_EQ(unknown.status, 64);
  EXPECT_THAT(unknown.err, HasSubstr("\"no-such-fault\""));
}

TEST_F(FaultsOrdered, ComeFromTheFileToo) {
  ASSERT_EQ(run("colima", {"start"}).status, 0);
  ASSERT_EQ(docker({"practice", "fault", "daemon-unreachable", "on"}).status, 0);
  EXPECT_THAT(docker({"info"}).err, HasSubstr("Cannot connect to the Docker daemon"));
  ASSERT_EQ(docker({"practice", "fault", "daemon-unreachable", "off"}).status, 0);
  EXPECT_EQ(docker({"info"}).status, 0);
  EXPECT_EQ(docker({"practice", "fault", "nonsense", "on"}).status, 64);
}

TEST_F(FaultsOrdered, FailInTheirOwnWords) {
  startEngine();
  const std::string other = "lscr.io/linuxserver/webtop:other";
  const Words pull = {"pull", other};
  const struct {
    const char* fault;
    const char* tool;
    Words arguments;
    int status;
    const char* text;
  } cases[] = {
      {"pull-disk-full", "docker", pull, 1, "no space left on device"},
      {"pull-no-network", "docker", pull, 1, "dial tcp: lookup lscr.io: no such host"},
      {"pull-manifest-unknown", "docker", pull, 1, "manifest unknown"},
      {"daemon-unreachable", "docker", pull, 1, "Is the docker daemon running?"},
      {"docker-crashes", "docker", {"compose", "version"}, -SIGABRT, ""},
      {"docker-prints-help", "docker", {"info"}, 0, "Usage:  docker"},
      {"compose-missing", "docker", {"compose", "version"}, 1, "unknown command: docker compose"},
      {"compose-fails", "docker", composeUp(), 1, "failed to create task"},
      {"compose-asks", "docker", composeUp(), 1, "canceled"},
      {"compose-name-in-use-once", "docker", composeUp(), 1, "is already in use by container"},
      {"compose-name-in-use-once", "docker", composeUp(), 0, "Started"},
      {"port-in-use", "docker", {"rm", "-f", "tarnwick"}, 0, "tarnwick"},
      {"port-in-use", "docker", composeUp(), 1, "port is already allocated"},
      {"port-in-use", "docker", runArguments(), 125, "port is already allocated"},
      {"run-fails", "docker", runArguments(), 125, "failed to create task"},
      {"volume-rm-fails", "docker", {"volume", "rm", kVolume}, 1, "device or resource busy"},
      {"colima-stop-fails", "colima", {"stop"}, 1, "level=fatal"},
      {"brew-services-fails", "brew", {"services", "stop", "colima"}, 1, "exited with 1"},
      {"pull-no-network", "colima", {"stop"}, 0, "done"},
      {"colima-start-fails", "colima", {"start"}, 1, "level=fatal msg=\"error starting vm"},
  };
  for (const auto& each : cases) {
    const Outcome outcome = run(each.tool, each.arguments, with(each.fault));
    EXPECT_EQ(outcome.status, each.status) << each.fault << ": " << outcome.err;
    EXPECT_THAT(outcome.out + outcome.err, HasSubstr(each.text)) << each.fault;
  }
}

TEST_F(FaultsOrdered, SpoilTheInstallation) {
  std::filesystem::remove(tools_ / "colima");
  const Outcome failed = run("brew", {"install", "colima"}, with("brew-fails"));
  EXPECT_EQ(failed.status, 1);
  EXPECT_THAT(failed.err, HasSubstr("Error: colima: Failed to download"));
  EXPECT_EQ(run("brew", {"install", "colima"}, with("brew-installs-elsewhere")).status, 0);
  EXPECT_FALSE(std::filesystem::exists(tools_ / "colima"));
  EXPECT_TRUE(std::filesystem::exists(state_ / "elsewhere" / "colima"));
}

TEST_F(FaultsOrdered, HangUntilSigterm) {
  std::vector<pid_t> pids = {startHanging("colima", {"start"}, "colima-start-hangs")};
  startEngine();
  std::filesystem::rename(tools_ / "colima", tools_ / "brewed");
  pids.push_back(startHanging("brew", {"install", "colima"}, "brew-hangs"));
  std::filesystem::rename(tools_ / "brewed", tools_ / "colima");
  const struct {
    const char* fault;
    const char* tool;
    Words arguments;
  } cases[] = {
      {"docker-hangs", "docker", {"info"}},
      {"pull-hangs", "docker", {"pull", "lscr.io/linuxserver/webtop:other"}},
      {"compose-hangs", "docker", composeUp()},
      {"colima-stop-hangs", "colima", {"stop"}},
  };
  for (const auto& each : cases)
    pids.push_back(startHanging(each.tool, each.arguments, each.fault));
  const pid_t stubborn = startHanging("docker", {"info"}, "docker-hangs,docker-ignores-sigterm");
  EXPECT_EQ(docker({"compose", "version"}, with("docker-hangs")).status, 0);
  for (const pid_t pid : pids) {
    EXPECT_FALSE(ended(pid, 0ms));
    ::kill(pid, SIGTERM);
    EXPECT_EQ(ended(pid, 20s), 143);
  }
  ::kill(stubborn, SIGTERM);
  EXPECT_FALSE(ended(stubborn, 200ms));
  ::kill(stubborn, SIGKILL);
  EXPECT_EQ(ended(stubborn, 20s), -SIGKILL);
}

TEST_F(FaultsOrdered, MakeOutputHardToRead) {
  ASSERT_EQ(run("colima", {"start"}).status, 0);
  const Outcome longLine = docker({"pull", kImage}, with("pull-long-line,pull-invalid-utf8"));
  EXPECT_EQ(longLine.status, 0);
  std::size_t longest = 0;
  bool invalid = false;
  for (const std::string& line : linesOf(longLine.out)) {
    longest = std::max(longest, line.size());
    invalid = invalid || line.find('\xff') != std::string::npos;
  }
  EXPECT_GE(longest, 50'000'000U);
  EXPECT_TRUE(invalid);
  EXPECT_EQ(docker({"image", "inspect", kImage}).status, 0);
}

TEST_F(FaultsOrdered, LeaveAProcessOnThePipe) {
  int ends[2] = {};
  ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
  const pid_t pid = start("colima", {"start"}, with("colima-holds-pipe"), {ends[1], ends[1]});
  ::close(ends[1]);
  EXPECT_EQ(ended(pid, 5s), 0);
  const auto closed = [&](std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < end) {
      char buffer[4096];
      pollfd ready{ends[0], POLLIN, 0};
      if (::poll(&ready, 1, 50) > 0 && ::read(ends[0], buffer, sizeof buffer) == 0) return true;
    }
    return false;
  };
  EXPECT_FALSE(closed(300ms));
  std::filesystem::remove_all(state_);
  EXPECT_TRUE(closed(3s));
  ::close(ends[0]);
}

TEST_F(FaultsOrdered, SpoilTheDesktop) {
  startEngine();
  const auto status = [&](const std::string& fault) {
    EXPECT_EQ(docker({"rm", "-f", "tarnwick"}).status, 0);
    EXPECT_EQ(up(with(fault)).status, 0);
    return statusOfPage("linux", "any");
  };
  EXPECT_EQ(status("desktop-answers-500"), 500);
  EXPECT_EQ(status("desktop-redirects"), 302);
  EXPECT_EQ(status("desktop-wrong-password"), 401);
  EXPECT_EQ(status("desktop-digest"), 401);
  const auto digest = client().Get("/");
  ASSERT_TRUE(digest);
  EXPECT_THAT(digest->get_header_value("WWW-Authenticate"), testing::StartsWith("Digest "));

  EXPECT_EQ(docker({"rm", "-f", "tarnwick"}).status, 0);
  EXPECT_EQ(up(with("desktop-never-answers,container-dies")).status, 0);
  httplib::Client silent = client();
  silent.set_read_timeout(300ms);
  httplib::Result answer = silent.Get("/");
  for (int i = 0; i < 100 && answer.error() == httplib::Error::Connection; ++i) {
    std::this_thread::sleep_for(10ms);
    answer = silent.Get("/");
  }
  EXPECT_FALSE(answer);
  EXPECT_EQ(answer.error(), httplib::Error::Read);
  EXPECT_TRUE(running());
  std::this_thread::sleep_for(2s);
  EXPECT_FALSE(running());
  EXPECT_THAT(docker({"logs", "--tail", "40", "tarnwick"}).out, HasSubstr("ends as ordered"));
}

}  // namespace
}  // namespace tarnwick::practice::test
