#include "ui/home/log_details.h"

#include <QTextDocument>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/interface/interface_fixture.h"
#include "ui/home/error_card.h"
#include "ui/home/home_screen.h"

namespace tarnwick {
namespace {

using std::chrono::milliseconds;

class Details : public testing::Test {
 protected:
  Details() {
    view.resize(600, 160);
    view.show();
  }
  void append(const std::string& line) {
    log.appendLine(line);
    view.follow();
  }
  void catchUp() { runEventLoop(milliseconds(130)); }
  [[nodiscard]] std::string shown() const { return view.toPlainText().toStdString(); }

  LogText log;
  LogDetails view{[this]() -> const LogText& { return log; }};
};

TEST_F(Details, ShowsTheWholeLogWhateverHappensToIt) {
  EXPECT_EQ(shown(), "(no output)");
  append("erste Zeile äöü");
  catchUp();
  EXPECT_EQ(shown(), log.text());
  append("second 日本");
  append("third");
  catchUp();
  EXPECT_EQ(shown(), log.text());
  while (log.appendedBytes() == log.text().size()) log.appendLine(std::string(99, 'x'));
  append("after the cut");
  catchUp();
  EXPECT_EQ(shown(), log.text()) << "the log was cut at its beginning";
  log = LogText();
  append("a new run");
  catchUp();
  EXPECT_EQ(shown(), log.text());
  log = LogText();
  view.follow();
  catchUp();
  EXPECT_EQ(shown(), "(no output)");
}

TEST_F(Details, AddsOnlyWhatIsNewAndKeepsTheSelection) {
  append("first line");
  catchUp();
  QTextCursor cursor = view.textCursor();
  cursor.setPosition(0);
  cursor.setPosition(5, QTextCursor::KeepAnchor);
  view.setTextCursor(cursor);
  std::vector<int> removed;
  QObject::connect(view.document(), &QTextDocument::contentsChange, &view,
                   [&](int, int charsRemoved, int) { removed.push_back(charsRemoved); });
  append("second line");
  catchUp();
  EXPECT_EQ(removed, std::vector<int>{0}) << "one change, nothing laid out anew";
  EXPECT_EQ(view.textCursor().selectedText(), "first");
}

TEST_F(Details, AFloodCausesFewChanges) {
  append("begin");
  catchUp();
  int changes = 0;
  QObject::connect(view.document(), &QTextDocument::contentsChanged, &view, [&] { ++changes; });
  for (int turn = 0; turn < 100; ++turn) {
    for (int line = 0; line < 20; ++line) append("a line of a tool that floods");
    runEventLoop(milliseconds(3));
  }
  catchUp();
  EXPECT_EQ(shown(), log.text());
  // About 300 ms and more on a slow machine: three a second less would be too slow, one a turn 100.
  EXPECT_LT(changes, 60);
}

class ErrorOnHome : public testing::Test {
 protected:
  InterfaceWorld world;
  DesktopController& c = world.controller;
  HomeScreen screen{c, world.windows};
};

TEST_F(ErrorOnHome, DetailsAreFoldedAtFirstAndAgainForTheNextError) {
  c.errorSummary = "The disk is full.";
  screen.resize(900, 900);
  screen.show();
  world.settle();
  EXPECT_THAT(shownTexts(screen), testing::Contains("The disk is full."));
  EXPECT_FALSE(findShown<LogDetails>(screen));
  QAbstractButton* header = findButton(screen, "Show details");
  EXPECT_EQ(header->accessibleDescription(), "collapsed");
  header->click();
  auto* details = findShown<LogDetails>(screen);
  ASSERT_TRUE(details);
  EXPECT_EQ(details->toPlainText(), "(no output)");
  EXPECT_EQ(details->height(), 160);
  EXPECT_EQ(header->accessibleDescription(), "expanded");
  c.errorSummary = std::nullopt;
  world.settle();
  c.errorSummary = "Docker does not answer.";
  world.settle();
  EXPECT_FALSE(findShown<LogDetails>(screen));
}

}  // namespace
}  // namespace tarnwick
