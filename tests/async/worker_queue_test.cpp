#include "core/async/worker_queue.h"

#include <future>
#include <gtest/gtest.h>
#include <thread>

#include "core/async/task_scope.h"
#include "tests/support/virtual_main_thread.h"

namespace tarnwick {
namespace {

Task<void> compute(WorkerQueue& workers, MainThread& mainThread, std::thread::id& ranOn,
                   std::optional<int>& result) {
  std::function<int()> job = [&ranOn] {
    ranOn = std::this_thread::get_id();
    return 42;
  };
  const int value = co_await onWorker<int>(workers, mainThread, std::move(job));
  result = value;
}

TEST(WorkerQueue, RunsOffTheMainThreadAndResumesOnIt) {
  VirtualMainThread mainThread;
  ThreadPool workers;
  TaskScope scope(mainThread);
  std::thread::id ranOn;
  std::optional<int> result;
  scope.start(compute(workers, mainThread, ranOn, result));
  ASSERT_TRUE(mainThread.waitUntil([&] { return result.has_value(); }));
  EXPECT_EQ(result, 42);
  EXPECT_NE(ranOn, std::this_thread::get_id());
}

TEST(WorkerQueue, ABlockedCallNeverDelaysAnother) {
  std::promise<void> release;
  std::shared_future<void> released = release.get_future().share();
  std::promise<void> reached;
  ThreadPool workers;
  for (int i = 0; i < 8; ++i) workers.run([released] { released.wait(); });
  workers.run([&reached] { reached.set_value(); });
  EXPECT_EQ(reached.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
  release.set_value();
}

TEST(WorkerQueue, AResultForADestroyedTaskIsDropped) {
  VirtualMainThread mainThread;
  std::thread::id ranOn;
  std::optional<int> result;
  {
    ThreadPool workers;
    TaskScope scope(mainThread);
    scope.start(compute(workers, mainThread, ranOn, result));
    mainThread.runPosted();
  }
  mainThread.runPosted();
  EXPECT_FALSE(result.has_value());
}

}  // namespace
}  // namespace tarnwick
