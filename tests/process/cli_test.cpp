#include "core/process/cli.h"

#include <cerrno>
#include <cmath>
#include <fcntl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "tests/process/runner_fixture.h"

namespace tarnwick {
namespace {

class CliTest : public RunnerFixture {
 protected:
  CommandResult run(const std::vector<std::string>& args, double timeout = 20,
                    const Environment& env = {}) {
    return cli_.runSync(tool_, args, timeout, env);
  }

  CLI cli_{tools_, workers_, mainThread_};
};

TEST_F(CliTest, TellsStatusAndBothStreamsApart) {
  const CommandResult both = run({"say", "a", "b"});
  EXPECT_EQ(both.status, 0);
  EXPECT_EQ(both.out, "a");
  EXPECT_EQ(both.err, "b");
  EXPECT_EQ(both.combined(), "a\nb");
  EXPECT_FALSE(both.timedOut);
  EXPECT_TRUE(both.succeeded());

  EXPECT_EQ(run({"say", "a\n"}).combined(), "a\n");
  EXPECT_EQ(run({"say", "", "b\n"}).combined(), "b\n");
  EXPECT_EQ(run({"exit", "0"}).combined(), "");
  EXPECT_EQ(run({"exit", "3"}).status, 3);
  EXPECT_EQ(run({"exit", "255"}).status, 255);
}

TEST_F(CliTest, TellsWhichSignalEndedTheTool) {
  const CommandResult killed = run({"die-of", "9"});
  EXPECT_EQ(killed.status, 128 + 9);
  EXPECT_EQ(killed.out, "last words");
  EXPECT_FALSE(killed.timedOut);
  EXPECT_EQ(run({"die-of", "15"}).status, 128 + 15);
}

TEST_F(CliTest, SaysWhyAToolCouldNotBeStarted) {
  const auto executable = std::filesystem::perms(0755);
  const std::string plain = home_.write("plain", "text");
  const std::string noInterpreterLine = home_.write("no-line", "echo hello\n", executable);
  const std::string lostInterpreter = home_.write("lost", "#!/nowhere/sh\n", executable);
  const std::vector<std::pair<std::string, int>> cases{{home_.path() + "/missing", ENOENT},
                                                       {plain, EACCES},
                                                       {home_.path(), EACCES},
                                                       {noInterpreterLine, ENOEXEC},
                                                       {lostInterpreter, ENOENT}};
  for (const auto& [exe, error] : cases) {
    const CommandResult result = cli_.runSync(exe, {}, 20, {});
    EXPECT_EQ(result.status, -1) << exe;
    EXPECT_EQ(result.err, std::generic_category().message(error)) << exe;
    EXPECT_EQ(result.out, "");
    EXPECT_FALSE(result.timedOut);
  }
  EXPECT_EQ(run({"exit", std::string(200'000, 'x')}).err, std::generic_category().message(E2BIG));
  // Cut at the zero byte these would mean something else.
  EXPECT_EQ(run({"arguments", std::string("a\0b", 3)}).status, -1);
  EXPECT_EQ(run({"exit", "0"}, 20, {{"NAME", std::string("a\0b", 3)}}).status, -1);
  EXPECT_LT(elapsed(), 5);
}

TEST_F(CliTest, PassesArgumentsUntouched) {
  const CommandResult result = run({"arguments", "two words", "", "$HOME", "'\"*\n", "ü"});
  EXPECT_EQ(result.out, "[two words][][$HOME]['\"*\n][ü]");
}

TEST_F(CliTest, AFileThatIsStillWrittenIsTriedAgain) {
  const std::string copy = home_.path() + "/copy";
  std::filesystem::copy_file("/bin/true", copy);
  const int writer = ::open(copy.c_str(), O_WRONLY | O_CLOEXEC);
  EXPECT_EQ(cli_.runSync(copy, {}, 20, {}).err, std::generic_category().message(ETXTBSY));
  std::thread closer([writer] {
    std::this_thread::sleep_for(std::chrono::milliseconds(25));
    ::close(writer);
  });
  EXPECT_EQ(cli_.runSync(copy, {}, 20, {}).status, 0);
  closer.join();
}

TEST_F(CliTest, ReplacesWhatIsNotUtf8) {
  const CommandResult result = run({"say", "a\xFF\xC3", "\xE2\x82z"});
  EXPECT_EQ(result.out, "a\uFFFD\uFFFD");
  EXPECT_EQ(result.err, "\uFFFDz");
}

TEST_F(CliTest, CollectsAFlood) {
  const CommandResult result = run({"flood", "33554432", "100"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out.size(), 33554432U);
}

TEST_F(CliTest, EndsAToolAtItsTimeLimit) {
  const CommandResult result = run({"hang"}, 0.3);
  EXPECT_TRUE(result.timedOut);
  EXPECT_EQ(result.status, 128 + 15);
  EXPECT_EQ(result.out, "begun\n");
  EXPECT_FALSE(result.succeeded());
  EXPECT_GE(elapsed(), 0.3);
  EXPECT_LT(elapsed(), 2.5);

  // Limits without sense end it at once instead of never.
  for (const double limit : {0.0, -5.0, std::nan("")}) EXPECT_TRUE(run({"hang"}, limit).timedOut);
  EXPECT_EQ(run({"exit", "0"}, 1e300).status, 0);
}

TEST_F(CliTest, GivesUpOnAToolThatIgnoresTheRequest) {
  const CommandResult result = run({"stubborn", "15000"}, 0.3);
  EXPECT_TRUE(result.timedOut);
  EXPECT_EQ(result.status, -1);
  EXPECT_EQ(result.out.substr(0, 8), "begun\n..");
  EXPECT_GE(elapsed(), 3.3);
  EXPECT_LT(elapsed(), 5);

  // Nobody reads it any more, so it dies; a later run clears it away.
  const auto nobodyLeft = [] {
    return ::waitid(P_ALL, 0, nullptr, WEXITED | WNOHANG | WNOWAIT) != 0;
  };
  for (int i = 0; i < 100 && !nobodyLeft(); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(run({"exit", "0"}).status, 0);
  }
  EXPECT_TRUE(nobodyLeft());
}

TEST_F(CliTest, DoesNotWaitForWhomTheToolLeftBehind) {
  EXPECT_EQ(run({"leave-behind", "quiet"}).out, "parent done");
  const CommandResult busy = run({"leave-behind", "busy"});
  EXPECT_EQ(busy.status, 0);
  EXPECT_FALSE(busy.timedOut);
  EXPECT_LT(elapsed(), 4);
}

TEST_F(CliTest, WaitsForTheEndOfAToolThatClosedItsOutput) {
  const CommandResult result = run({"close-output"});
  EXPECT_EQ(result.status, 7);
  EXPECT_FALSE(result.timedOut);
}

Task<void> runTwo(CLI& cli, std::string tool, std::vector<CommandResult>& results,
                  std::thread::id& resumedOn) {
  std::vector<std::string> args{"say", "from a worker"};
  Environment env;
  CommandResult first = co_await cli.run(tool, args, 20, env);
  results.push_back(std::move(first));
  resumedOn = std::this_thread::get_id();
  std::vector<std::string> missing;
  CommandResult second = co_await cli.run("/missing", missing, 20, env);
  results.push_back(std::move(second));
}

TEST_F(CliTest, ResumesTheAwaitingTaskOnTheMainThread) {
  std::vector<CommandResult> results;
  std::thread::id resumedOn;
  scope_.start(runTwo(cli_, tool_, results, resumedOn));
  ASSERT_TRUE(mainThread_.waitUntil([&] { return results.size() == 2; }));
  EXPECT_EQ(results[0].out, "from a worker");
  EXPECT_EQ(resumedOn, std::this_thread::get_id());
  EXPECT_EQ(results[1].status, -1);
}

TEST_F(CliTest, ManyRunsAtOnceShareNothing) {
  std::vector<std::thread> threads;
  std::array<std::string, 8> outputs;
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    threads.emplace_back([this, i, &outputs] {
      for (int n = 0; n < 5; ++n) outputs[i] += run({"say", std::to_string(i)}).out;
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    EXPECT_EQ(outputs[i], std::string(5, static_cast<char>('0' + i)));
  }
}

}  // namespace
}  // namespace tarnwick
