#include "core/controller/line_channel.h"

#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/virtual_main_thread.h"

namespace tarnwick {
namespace {

TEST(LineChannel, DeliversEveryLineInOrderOnTheMainThread) {
  VirtualMainThread mainThread;
  std::vector<std::string> seen;
  const auto channel = std::make_shared<LineChannel>(
      mainThread, [&seen](std::string_view line) { seen.emplace_back(line); });
  constexpr int count = 50'000;
  std::thread reader([channel] {
    for (int i = 0; i < count; ++i) channel->push(std::to_string(i));
  });
  ASSERT_TRUE(mainThread.waitUntil([&seen] { return seen.size() == count; }));
  reader.join();
  for (int i = 0; i < count; ++i) ASSERT_EQ(seen[static_cast<std::size_t>(i)], std::to_string(i));
}

TEST(LineChannel, AReaderFarAheadWaitsUntilLinesAreTaken) {
  VirtualMainThread mainThread;
  std::size_t seen = 0;
  const auto channel =
      std::make_shared<LineChannel>(mainThread, [&seen](std::string_view) { ++seen; });
  std::atomic<std::size_t> pushed = 0;
  const std::string line(1023, 'x');
  constexpr std::size_t count = 4'096;
  std::thread reader([&] {
    for (std::size_t i = 0; i < count; ++i) {
      channel->push(line);
      ++pushed;
    }
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_LE(pushed.load(), 200U);
  EXPECT_TRUE(mainThread.waitUntil([&] { return seen == count; }));
  reader.join();
}

TEST(LineChannel, ClosingFreesTheReaderAndDropsItsLines) {
  VirtualMainThread mainThread;
  bool consumed = false;
  const auto channel =
      std::make_shared<LineChannel>(mainThread, [&consumed](std::string_view) { consumed = true; });
  std::thread reader([channel] {
    const std::string line(64 * 1024, 'x');
    for (int i = 0; i < 16; ++i) channel->push(line);
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  channel->close();
  reader.join();
  mainThread.runPosted();
  EXPECT_FALSE(consumed);
}

}  // namespace
}  // namespace tarnwick
