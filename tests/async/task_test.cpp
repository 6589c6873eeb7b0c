#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "core/async/sleep.h"
#include "core/async/task_scope.h"
#include "tests/support/virtual_main_thread.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

Task<std::string> greet(MainThread& mainThread, std::string name) {
  co_await sleepFor(mainThread, 1s, CancellationToken());
  co_return "hello " + name;
}

Task<void> record(MainThread& mainThread, std::vector<std::string>& seen, std::string name) {
  seen.push_back("begin " + name);
  const std::string greeting = co_await greet(mainThread, name);
  seen.push_back(greeting);
}

TEST(Task, RunsLazilyInLaterTurnsAndReturnsItsValue) {
  VirtualMainThread mainThread;
  TaskScope scope(mainThread);
  std::vector<std::string> seen;
  scope.start(record(mainThread, seen, "a"));
  scope.start(record(mainThread, seen, "b"));
  EXPECT_TRUE(seen.empty());
  mainThread.runPosted();
  EXPECT_EQ(seen, (std::vector<std::string>{"begin a", "begin b"}));
  mainThread.advance(999ms);
  EXPECT_EQ(seen.size(), 2U);
  mainThread.advance(1ms);
  EXPECT_EQ(seen, (std::vector<std::string>{"begin a", "begin b", "hello a", "hello b"}));
  EXPECT_EQ(scope.size(), 0U);
}

Task<void> holdUntilEnd(MainThread& mainThread, std::shared_ptr<int> held) {
  co_await sleepFor(mainThread, 1h, CancellationToken());
  ++*held;
}

TEST(Task, DestroyingTheScopeDestroysSuspendedFramesAndNeverResumesThem) {
  VirtualMainThread mainThread;
  const auto held = std::make_shared<int>(0);
  {
    TaskScope scope(mainThread);
    scope.start(holdUntilEnd(mainThread, held));
    mainThread.runPosted();
    scope.start(holdUntilEnd(mainThread, held));
    EXPECT_EQ(held.use_count(), 3);
  }
  EXPECT_EQ(held.use_count(), 1);
  mainThread.advance(2h);
  EXPECT_EQ(*held, 0);
}

Task<void> sleepAndNote(MainThread& mainThread, CancellationToken token, TimePoint& woke) {
  co_await sleepFor(mainThread, 10s, token);
  woke = mainThread.now();
}

TEST(Sleep, EndsEarlyWhenCancelledAndOnlyOnce) {
  VirtualMainThread mainThread;
  TaskScope scope(mainThread);
  CancellationSource source;
  TimePoint first;
  TimePoint second;
  scope.start(sleepAndNote(mainThread, source.token(), first));
  mainThread.advance(3s);
  source.cancel();
  scope.start(sleepAndNote(mainThread, source.token(), second));
  mainThread.advance(1min);
  EXPECT_EQ(first, TimePoint() + 3s);
  EXPECT_EQ(second, TimePoint() + 3s);
  EXPECT_EQ(scope.size(), 0U);
}

}  // namespace
}  // namespace tarnwick
