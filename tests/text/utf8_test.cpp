#include "core/text/utf8.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

const std::string replaced = "\xEF\xBF\xBD";

std::string times(std::size_t count, const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < count; ++i) result += text;
  return result;
}

TEST(Utf8, KeepsWellFormedText) {
  // The first and last character of each length, and the neighbours of the surrogates.
  for (const std::string& text :
       {std::string(), std::string("plain"), std::string(1, '\0'), std::string("\x7F\xC2\x80"),
        std::string("\xDF\xBF\xE0\xA0\x80"), std::string("\xED\x9F\xBF\xEE\x80\x80"),
        std::string("\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"), times(50, "日本語 text ü ")}) {
    EXPECT_EQ(decodeUtf8(text), text);
    EXPECT_EQ(wellFormedUtf8Prefix(text), text.size());
  }
}

TEST(Utf8, ReplacesEachIllFormedSequenceOnce) {
  const auto expectReplaced = [](const std::string& bytes, std::size_t count) {
    EXPECT_EQ(decodeUtf8(bytes), times(count, replaced)) << testing::PrintToString(bytes);
    EXPECT_EQ(decodeUtf8("a" + bytes + "b"), "a" + times(count, replaced) + "b");
    EXPECT_EQ(decodeUtf8("ü" + bytes + "ü"), "ü" + times(count, replaced) + "ü");
  };
  expectReplaced("\x80", 1);
  expectReplaced("\xFF\xFE", 2);
  expectReplaced("\xC3", 1);              // cut after the first byte
  expectReplaced("\xE2\x82", 1);          // cut after the second
  expectReplaced("\xF0\x9F\x98", 1);      // cut after the third
  expectReplaced("\xF0\x9F\xE2\x82", 2);  // one start after the other
  expectReplaced("\xC0\xAF", 2);          // overlong
  expectReplaced("\xE0\x80\xAF", 3);
  expectReplaced("\xF0\x80\x80\xAF", 4);
  expectReplaced("\xED\xA0\x80", 3);      // a surrogate
  expectReplaced("\xF4\x90\x80\x80", 4);  // beyond the last code point
  expectReplaced("\xF8\x88\x80\x80\x80", 5);
}

TEST(Utf8, FindsAFaultAtEveryPlaceOfALongText) {
  for (std::size_t at = 0; at < 200; ++at) {
    std::string text(200, 'x');
    text[at] = '\xE9';
    EXPECT_EQ(wellFormedUtf8Prefix(text), at);
    EXPECT_EQ(decodeUtf8(text), std::string(at, 'x') + replaced + std::string(199 - at, 'x'));
  }
}

}  // namespace
}  // namespace tarnwick
