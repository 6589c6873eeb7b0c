#include "core/controller/log_text.h"

#include <gtest/gtest.h>
#include <string>

namespace tarnwick {
namespace {

std::string numbered(int i) {
  return "line " + std::to_string(i);
}

TEST(LogText, KeepsEverythingUpTo80000BytesAndThenTheLast50000Characters) {
  LogText log;
  const std::string line(99, 'x');
  std::string all;
  for (int i = 0; i < 800; ++i) {
    log.appendLine(line);
    all += line + "\n";
  }
  EXPECT_EQ(log.text().size(), 80'000U);
  log.appendLine("y");
  all += "y\n";
  EXPECT_EQ(log.text(), std::string_view(all).substr(all.size() - 50'000));
  EXPECT_EQ(log.appendedBytes(), all.size());
}

TEST(LogText, CutsWholeCharactersNotBytes) {
  LogText log;
  // A letter with a combining mark, and a family joined of three emoji: one character each.
  const std::string accented = "e\xCC\x81";
  const std::string family =
      "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7";
  std::string all;
  for (int i = 0; i < 30'000; ++i) {
    const std::string line = i % 2 == 0 ? accented : family;
    log.appendLine(line);
    all += line + "\n";
  }
  // 60,000 characters went in, two a line; the last 50,000 are the last 25,000 lines.
  EXPECT_EQ(log.text(), std::string_view(all).substr(all.size() - 12'500 * (3 + 18 + 2)));
}

TEST(LogText, ManyBytesInFewCharactersAreNotCut) {
  LogText log;
  std::string line;
  for (int i = 0; i < 3'000; ++i) line += "\xE6\xBC\xA2";
  for (int i = 0; i < 10; ++i) log.appendLine(line);
  EXPECT_EQ(log.text().size(), 10 * 9'001U);
}

TEST(LogText, OneHugeLineIsCutToo) {
  LogText log;
  log.appendLine(std::string(500'000, 'a') + "end");
  EXPECT_EQ(log.text().size(), 50'000U);
  EXPECT_TRUE(log.text().ends_with("aend\n"));
}

TEST(LogText, ACarriageReturnBeforeTheLineEndIsPartOfOneCharacter) {
  LogText log;
  // "a" and CR LF: two characters a line, three bytes. The line that passes 80,000 bytes cuts.
  for (int i = 0; i < 80'001 / 3; ++i) log.appendLine("a\r");
  EXPECT_EQ(log.text().size(), 25'000 * 3U);
  EXPECT_TRUE(log.text().starts_with("a\r\n"));
}

TEST(LogText, TheTailSkipsEmptyLines) {
  LogText log;
  EXPECT_TRUE(log.tail(6).empty());
  for (int i = 0; i < 10; ++i) {
    log.appendLine(numbered(i));
    log.appendLine("");
  }
  const auto tail = log.tail(6);
  ASSERT_EQ(tail.size(), 6U);
  EXPECT_EQ(tail.front(), numbered(4));
  EXPECT_EQ(tail.back(), numbered(9));
  EXPECT_EQ(log.tail(100).size(), 10U);
}

}  // namespace
}  // namespace tarnwick
