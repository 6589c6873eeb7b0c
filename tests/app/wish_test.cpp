#include "app/wish.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(WishLines, EveryRequestComesThrough) {
  for (const Wish wish : {Wish::open, Wish::launch, Wish::background, Wish::settings, Wish::logs,
                          Wish::stop, Wish::status, Wish::statusJson}) {
    for (const char* token : {"", "gnome-shell/Files/1234-5-host_TIME67890"}) {
      const Request request{wish, token};
      EXPECT_EQ(parseRequest(requestLine(request)), request);
    }
  }
}

TEST(WishLines, ATokenThatCouldBreakTheLineStaysBehind) {
  for (const std::string& token :
       {std::string("two words"), std::string("a\nstop"), std::string("\x01"), std::string("ü"),
        std::string(longestRequest, 'x')}) {
    const std::string line = requestLine({Wish::open, token});
    EXPECT_EQ(line, "open\n");
  }
}

TEST(WishLines, WhatIsNoRequestIsNone) {
  for (const std::string& line :
       {std::string(), std::string("\n"), std::string("explode\n"), std::string("Open\n"),
        std::string("open \t\n"), std::string("open a b\n"), std::string("stop\0\n", 6),
        "open " + std::string(longestRequest, 'x') + "\n"}) {
    EXPECT_FALSE(parseRequest(line)) << line;
  }
}

TEST(WishLines, AnAnswerStaysOnItsLine) {
  const Answer answer(ExitCode::notRunning, "Starting: 3 of 9 layers");
  EXPECT_EQ(parseAnswer(answerLine(answer)), answer);
  EXPECT_EQ(answerLine({ExitCode::failed, "one\ntwo"}), "1 one two\n");
  EXPECT_EQ(answerLine({ExitCode::done, std::string(2 * longestAnswer, 'x')}).size(),
            longestAnswer);
  std::string kept;
  while (kept.size() + 3 + 3 <= longestAnswer) kept += "…";
  EXPECT_EQ(answerLine({ExitCode::done, kept + "…"}), "0 " + kept + '\n');
  for (const char* line : {"", "\n", "4 no such code\n", "00 two digits\n", "-1 x\n", "done\n"}) {
    EXPECT_FALSE(parseAnswer(line)) << line;
  }
}

}  // namespace
}  // namespace tarnwick
