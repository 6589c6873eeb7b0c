// What a tool gets from us and what it must not get, and runs in a process in a strange state.

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "core/process/cli.h"
#include "tests/process/runner_fixture.h"

namespace tarnwick {
namespace {

class InheritanceTest : public RunnerFixture {
 protected:
  CLI cli_{tools_, workers_, mainThread_};
};

TEST_F(InheritanceTest, AToolGetsNoDescriptorsNoInputAndDefaultSignals) {
  const int leaked = ::dup(STDOUT_FILENO);  // stays open over exec
  sigset_t all;
  sigset_t before;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  const auto pipeSignal = ::signal(SIGPIPE, SIG_IGN);

  const CommandResult result = cli_.runSync(tool_, {"inheritance"}, 20, {});

  ::signal(SIGPIPE, pipeSignal);
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  ::close(leaked);
  EXPECT_EQ(result.out, "files 0 1 2\ninput 0\n");
}

TEST_F(InheritanceTest, AToolGetsThePreparedEnvironmentWithEachNameOnce) {
  const std::string home = tools_.environment({}).at("PATH");
  const CommandResult result = cli_.runSync(tool_, {"environment"}, 20, {{"PASSWORD", "a=b"}});
  EXPECT_EQ(result.out,
            "HOMEBREW_NO_ENV_HINTS=1\nINHERITED=yes\nPASSWORD=a=b\nPATH=" + home + "\n");
  EXPECT_EQ(cli_.runSync(tool_, {"environment"}, 20, {{"PATH", "/mine"}, {"INHERITED", "no"}}).out,
            "HOMEBREW_NO_ENV_HINTS=1\nINHERITED=no\nPATH=/mine\n");
}

TEST_F(InheritanceTest, RunsInAProcessWithoutStandardDescriptors) {
  std::array<int, 3> saved{};
  for (int i = 0; i < 3; ++i) {
    saved[static_cast<std::size_t>(i)] = ::fcntl(i, F_DUPFD_CLOEXEC, 10);
    ::close(i);
  }
  const CommandResult result = cli_.runSync(tool_, {"say", "a", "b"}, 20, {});
  for (int i = 0; i < 3; ++i) {
    ::dup2(saved[static_cast<std::size_t>(i)], i);
    ::close(saved[static_cast<std::size_t>(i)]);
  }
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.combined(), "a\nb");
}

TEST_F(InheritanceTest, AnEndThatTheSystemDoesNotTellIsNotWaitedFor) {
  const auto before = ::signal(SIGCHLD, SIG_IGN);
  const CommandResult result = cli_.runSync(tool_, {"say", "said"}, 20, {});
  ::signal(SIGCHLD, before);
  EXPECT_EQ(result.status, -1);
  EXPECT_EQ(result.out, "said");
  EXPECT_FALSE(result.timedOut);
  EXPECT_LT(elapsed(), 5);
}

TEST_F(InheritanceTest, ScarceDescriptorsAreAReasonAndNotAHang) {
  const int lowestFree = ::dup(STDOUT_FILENO);
  ::close(lowestFree);
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  const auto runWith = [&](int count) {
    rlimit limit = before;
    limit.rlim_cur = static_cast<rlim_t>(lowestFree + count);
    ::setrlimit(RLIMIT_NOFILE, &limit);
    CommandResult result = cli_.runSync(tool_, {"say", "said"}, 20, {});
    ::setrlimit(RLIMIT_NOFILE, &before);
    return result;
  };
  const CommandResult none = runWith(3);
  EXPECT_EQ(none.status, -1);
  EXPECT_EQ(none.err, std::generic_category().message(EMFILE));
  // Enough for the pipes, but not for a descriptor that tells of the tool's end.
  const CommandResult few = runWith(4);
  EXPECT_EQ(few.status, 0) << few.err;
  EXPECT_EQ(few.out, "said");
}

}  // namespace
}  // namespace tarnwick
