#include "platform/qt/qt_main_thread.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <vector>

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

class QtLoop : public ::testing::Test {
 protected:
  /// Runs the loop until `quit` is called; fails after ten seconds.
  void run() {
    QTimer::singleShot(10s, &loop, [this] { loop.exit(1); });
    EXPECT_EQ(loop.exec(), 0) << "the loop was never told to end";
  }

  int argumentCount = 1;
  char name[5] = "test";
  char* arguments[2] = {name, nullptr};
  QCoreApplication application{argumentCount, arguments};
  QtMainThread mainThread;
  QEventLoop loop;
};

TEST_F(QtLoop, PostsOfEachThreadRunInOrderOnTheMainThread) {
  constexpr int threads = 4;
  constexpr int perThread = 20'000;
  std::vector<std::vector<int>> seen(threads);
  int left = threads * perThread;
  const auto mainId = std::this_thread::get_id();
  bool elsewhere = false;
  std::vector<std::thread> posters;
  for (std::size_t who = 0; who < threads; ++who) {
    posters.emplace_back([&, who] {
      for (int i = 0; i < perThread; ++i) {
        mainThread.post([&, who, i] {
          elsewhere = elsewhere || std::this_thread::get_id() != mainId;
          seen[who].push_back(i);
          if (--left == 0) loop.quit();
        });
      }
    });
  }
  run();
  for (std::thread& poster : posters) poster.join();
  EXPECT_FALSE(elsewhere);
  for (const std::vector<int>& numbers : seen) {
    ASSERT_EQ(numbers.size(), static_cast<std::size_t>(perThread));
    EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
  }
}

TEST_F(QtLoop, NothingRunsInsideThePost) {
  bool inside = false;
  mainThread.post([&] {
    bool ran = false;
    mainThread.post([&] {
      ran = true;
      loop.quit();
    });
    inside = ran;
  });
  run();
  EXPECT_FALSE(inside);
}

TEST_F(QtLoop, AFloodOfPostsLeavesTheLoopItsTurns) {
  // Work that always posts more work, and a second thread that never stops posting.
  std::function<void()> again = [&] { mainThread.post(again); };
  mainThread.post(again);
  std::atomic<bool> over = false;
  std::atomic<int> inFlight = 0;
  std::thread poster([&] {
    while (!over) {
      if (inFlight > 1000) continue;
      ++inFlight;
      mainThread.post([&] { --inFlight; });
    }
  });
  QTimer frames;
  int painted = 0;
  auto last = Clock::now();
  Duration longest{};
  QObject::connect(&frames, &QTimer::timeout, &loop, [&] {
    longest = std::max(longest, Clock::now() - last);
    last = Clock::now();
    if (++painted == 30) loop.quit();
  });
  frames.setTimerType(Qt::PreciseTimer);
  frames.start(16);
  run();
  over = true;
  poster.join();
  // The loop's own limit is a tenth of this; the rest is for a busy machine.
  EXPECT_LT(longest, 100ms);
}

TEST_F(QtLoop, WorkGoesOnInsideADialogsLoop) {
  std::vector<int> order;
  mainThread.post([&] {
    QEventLoop dialog;
    mainThread.post([&] {
      order.push_back(3);
      dialog.quit();
    });
    order.push_back(1);
    dialog.exec();
    order.push_back(4);
  });
  mainThread.post([&] { order.push_back(2); });
  mainThread.postAfter(50ms, [&] { loop.quit(); });
  run();
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
}

TEST_F(QtLoop, DelaysAreNeverShortAndKeepTheirOrder) {
  std::vector<int> order;
  const TimePoint start = mainThread.now();
  for (const int milliseconds : {60, 20, 40, 0}) {
    mainThread.postAfter(std::chrono::milliseconds(milliseconds) + 300us, [&, milliseconds] {
      order.push_back(milliseconds);
      EXPECT_GE(mainThread.now() - start, std::chrono::milliseconds(milliseconds) + 300us);
      if (order.size() == 4) loop.quit();
    });
  }
  run();
  EXPECT_EQ(order, (std::vector<int>{0, 20, 40, 60}));
  EXPECT_LT(mainThread.now() - start, 1s);
}

TEST_F(QtLoop, WhatStillWaitsAtTheEndIsDropped) {
  const auto witness = std::make_shared<int>(0);
  {
    QtMainThread ending;
    ending.post([witness] { FAIL(); });
    ending.postAfter(1h, [witness] { FAIL(); });
  }
  mainThread.postAfter(20ms, [this] { loop.quit(); });
  run();
  EXPECT_EQ(witness.use_count(), 1);
}

}  // namespace
}  // namespace tarnwick
