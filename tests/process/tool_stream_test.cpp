#include "core/process/tool_stream.h"

#include <atomic>
#include <mutex>
#include <thread>

#include "tests/process/runner_fixture.h"

namespace tarnwick {
namespace {

using Lines = std::vector<std::string>;

Task<void> runStream(std::shared_ptr<StreamingProcess> stream, std::string exe,
                     std::vector<std::string> args, LineCallback onLine,
                     std::optional<std::int32_t>& result) {
  Environment env;
  const std::int32_t status =
      co_await stream->run(std::move(exe), std::move(args), std::move(env), std::move(onLine));
  result = status;
}

class ToolStreamTest : public RunnerFixture {
 protected:
  void start(std::vector<std::string> args) { startTool(tool_, std::move(args)); }

  void startTool(std::string exe, std::vector<std::string> args) {
    startWith(std::move(exe), std::move(args), [this](std::string_view line) {
      const std::lock_guard lock(mutex_);
      lines_.emplace_back(line);
    });
  }

  void startWith(std::string exe, std::vector<std::string> args, LineCallback onLine) {
    result_.reset();
    scope_.start(runStream(stream_, std::move(exe), std::move(args), std::move(onLine), result_));
  }

  [[nodiscard]] std::int32_t finish() {
    EXPECT_TRUE(mainThread_.waitUntil([this] { return result_.has_value(); }));
    return result_.value_or(-1000);
  }

  [[nodiscard]] Lines lines() {
    const std::lock_guard lock(mutex_);
    return lines_;
  }

  void renew() { stream_ = factory_(); }

  const StreamingProcessFactory factory_ = ToolStream::factory(tools_, workers_, mainThread_);
  std::shared_ptr<StreamingProcess> stream_ = factory_();
  std::optional<std::int32_t> result_;

 private:
  std::mutex mutex_;
  Lines lines_;
};

TEST_F(ToolStreamTest, PassesLinesOnAndGivesTheStatus) {
  start({"say", "a\nb"});
  EXPECT_EQ(finish(), 0);
  EXPECT_EQ(lines(), (Lines{"a", "b"}));

  renew();
  start({"exit", "3"});
  EXPECT_EQ(finish(), 3);
  renew();
  start({"die-of", "9"});
  EXPECT_EQ(finish(), 128 + 9);
  EXPECT_EQ(lines(), (Lines{"a", "b", "last words"}));
}

TEST_F(ToolStreamTest, MergesBothStreamsInTheOrderWritten) {
  start({"alternate", "out 1\n", "error 1\n", "out ", "error 2\n"});
  EXPECT_EQ(finish(), 0);
  EXPECT_EQ(lines(), (Lines{"out 1", "error 1", "out error 2"}));
}

TEST_F(ToolStreamTest, LinesArriveWhileTheToolRuns) {
  start({"hang"});
  EXPECT_TRUE(mainThread_.waitUntil([this] { return lines() == Lines{"begun"}; }));
  EXPECT_FALSE(result_.has_value());
  stream_->cancel();
  EXPECT_EQ(finish(), 128 + 15);
  stream_->cancel();

  start({"say", "again"});
  EXPECT_EQ(finish(), StreamingProcess::cancelledBeforeStart);
  EXPECT_EQ(lines(), Lines{"begun"});
}

TEST_F(ToolStreamTest, CancelledBeforeTheStartNothingRuns) {
  stream_->cancel();
  stream_->cancel();
  startTool("/missing", {});
  EXPECT_EQ(finish(), StreamingProcess::cancelledBeforeStart);
  EXPECT_EQ(lines(), Lines());
}

TEST_F(ToolStreamTest, CancelAtAnyMomentOfTheStartEndsTheRun) {
  for (int i = 0; i < 60; ++i) {
    renew();
    start({"hang"});
    mainThread_.runPosted();
    std::thread canceller([stream = stream_, i] {
      std::this_thread::sleep_for(std::chrono::microseconds(i * 40));
      stream->cancel();
    });
    const std::int32_t status = finish();
    canceller.join();
    EXPECT_TRUE(status == StreamingProcess::cancelledBeforeStart || status == 128 + 15) << status;
  }
  EXPECT_LT(elapsed(), 15);
}

TEST_F(ToolStreamTest, AToolThatIgnoresTheRequestEndsByItself) {
  start({"stubborn", "500"});
  ASSERT_TRUE(mainThread_.waitUntil([this] { return !lines().empty(); }));
  stream_->cancel();
  EXPECT_EQ(finish(), 4);
}

TEST_F(ToolStreamTest, SaysWhyAToolCouldNotBeStarted) {
  startTool("/no folder/tool", {});
  EXPECT_EQ(finish(), StreamingProcess::couldNotStart);
  EXPECT_EQ(lines(), Lines{"Could not start /no folder/tool: No such file or directory"});
}

TEST_F(ToolStreamTest, DoesNotWaitForWhomTheToolLeftBehind) {
  start({"leave-behind", "quiet"});
  EXPECT_EQ(finish(), 0);
  EXPECT_EQ(lines(), Lines{"parent done"});
  renew();
  startWith(tool_, {"leave-behind", "busy"}, [](std::string_view) {});
  EXPECT_EQ(finish(), 0);
  EXPECT_LT(elapsed(), 4);
}

TEST_F(ToolStreamTest, PassesALineOfFiftyMegabytesOnInOnePiece) {
  std::atomic<std::size_t> longest = 0;
  std::atomic<int> count = 0;
  startWith(tool_, {"flood", "50000000", "0"}, [&](std::string_view line) {
    longest = line.size();
    ++count;
  });
  EXPECT_EQ(finish(), 0);
  EXPECT_EQ(longest, 50'000'000U);
  EXPECT_EQ(count, 1);
}

TEST_F(ToolStreamTest, LosesNothingOfAFloodThatASlowCallbackHoldsUp) {
  std::atomic<std::size_t> bytes = 0;
  std::atomic<int> count = 0;
  startWith(tool_, {"flood", "16777216", "127"}, [&](std::string_view line) {
    bytes += line.size() + 1;
    if (++count % 20'000 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(50));
  });
  EXPECT_EQ(finish(), 0);
  EXPECT_EQ(bytes, 16'777'216U);
}

}  // namespace
}  // namespace tarnwick
