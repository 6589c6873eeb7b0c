#include "core/process/line_splitter.h"

#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "core/text/utf8.h"

namespace tarnwick {
namespace {

using Lines = std::vector<std::string>;

Lines split(const std::vector<std::string>& chunks) {
  Lines lines;
  const LineCallback collect = [&lines](std::string_view line) { lines.emplace_back(line); };
  LineSplitter splitter;
  for (const std::string& chunk : chunks) splitter.feed(chunk, collect);
  splitter.flush(collect);
  splitter.flush(collect);  // there is nothing left
  return lines;
}

TEST(LineSplitter, EveryLineEndEndsALineAndBlankLinesAreLeftOut) {
  EXPECT_EQ(split({"a\nb"}), (Lines{"a", "b"}));
  EXPECT_EQ(split({"a\r\nb\n"}), (Lines{"a", "b"}));
  EXPECT_EQ(split({"\n\n\n"}), Lines());
  EXPECT_EQ(split({"10%\r20%\r30%\n"}), (Lines{"10%", "20%", "30%"}));
  EXPECT_EQ(split({"a\vb\fc\u0085d\u2028e\u2029f"}), (Lines{"a", "b", "c", "d", "e", "f"}));
  EXPECT_EQ(split({" a \n\tb\t\n"}), (Lines{" a ", "\tb\t"}));
}

TEST(LineSplitter, NeighboursOfLineEndsAreText) {
  const std::string text = "\t\x0E\u0084\u0086\u2027\u202A\u2020\u20A8";
  EXPECT_EQ(split({text + "\n"}), Lines{text});
}

TEST(LineSplitter, JoinsALineThatComesInChunks) {
  EXPECT_EQ(split({"hel", "lo\n"}), Lines{"hello"});
  EXPECT_EQ(split({"a", "", "b", "\r", "\nc", "\n"}), (Lines{"ab", "c"}));
}

TEST(LineSplitter, DecodesEachChunkByItself) {
  EXPECT_EQ(split({"a\xFFz\nb"}), (Lines{"a\uFFFDz", "b"}));
  EXPECT_EQ(split({"\xC3", "\xBC\n"}), Lines{"\uFFFD\uFFFD"});
  EXPECT_EQ(split({"\xE2\x80", "\xA8"}), Lines{"\uFFFD\uFFFD"});
}

/// The same by plain means: decode, find the first line end of all, cut, repeat.
Lines splitPlainly(const std::vector<std::string>& chunks) {
  std::string text;
  for (const std::string& chunk : chunks) text += decodeUtf8(chunk);
  Lines lines;
  while (!text.empty()) {
    std::size_t end = text.size();
    std::size_t length = 0;
    for (const std::string lineEnd : {"\n", "\v", "\f", "\r", "\u0085", "\u2028", "\u2029"}) {
      const std::size_t found = text.find(lineEnd);
      if (found < end) {
        end = found;
        length = lineEnd.size();
      }
    }
    if (end > 0) lines.push_back(text.substr(0, end));
    text.erase(0, end + length);
  }
  return lines;
}

TEST(LineSplitter, AgreesWithAPlainVersionOnRandomChunks) {
  std::mt19937 random(7);
  const std::vector<std::string> parts{"\n",     "\r",   "\v",   "\u0085",    "\u2028",
                                       "\u2029", "\xE2", "\x80", "\xC2",      "\xFF",
                                       "x",      "abc",  "ü",    "\U0001F600"};
  for (int round = 0; round < 2000; ++round) {
    std::vector<std::string> chunks(1 + random() % 4);
    for (std::string& chunk : chunks) {
      for (std::size_t n = random() % 12; n > 0; --n) chunk += parts[random() % parts.size()];
    }
    ASSERT_EQ(split(chunks), splitPlainly(chunks)) << testing::PrintToString(chunks);
  }
}

}  // namespace
}  // namespace tarnwick
