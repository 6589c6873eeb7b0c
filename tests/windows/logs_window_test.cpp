#include "ui/logs_window/logs_window.h"

#include <QClipboard>
#include <QScrollBar>
#include <QTextBlock>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/resource.h>

#include "core/engine/docker.h"
#include "tests/windows/windows_fixture.h"

namespace tarnwick {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

std::string contentOf(const std::string& path) {
  std::ifstream file(path);
  return (std::ostringstream() << file.rdbuf()).str();
}

QString numbered(int from, int to) {
  QString text;
  for (int i = from; i <= to; ++i) text += QString("line %1\n").arg(i);
  return text;
}

class LogsTest : public testing::Test, public WindowsWorld {
 protected:
  std::size_t loads() { return runner.count({"docker", "logs"}); }

  Docker docker{runner, tools};
  int changes = 0;
};

class LogsFeedTest : public LogsTest {
 protected:
  LogsFeed feed{docker, mainThread, [this] { ++changes; }};
};

TEST_F(LogsFeedTest, LoadsOnceByItself) {
  EXPECT_EQ(feed.text(), "Loading…");
  mainThread.advance(seconds(60));
  EXPECT_EQ(feed.text(), "container says hello\n");
  EXPECT_EQ(loads(), 1U);
  EXPECT_EQ(runner.calls.back().args,
            (std::vector<std::string>{"logs", "--tail", "300", "tarnwick"}));
  EXPECT_EQ(changes, 1);
}

TEST_F(LogsFeedTest, FollowsEveryTwoSecondsUntilTurnedOff) {
  mainThread.advance(seconds(1));
  feed.setFollow(true);
  mainThread.advance(seconds(1));
  EXPECT_EQ(loads(), 2U) << "within one period of turning it on";
  mainThread.advance(seconds(10));
  EXPECT_EQ(loads(), 7U);
  feed.setFollow(false);
  mainThread.advance(seconds(10));
  EXPECT_EQ(loads(), 7U);
}

TEST_F(LogsFeedTest, NeverLoadsTwiceAtOnce) {
  runner.on({"docker", "logs"}, seconds(7),
            FakeCommandRunner::always(FakeCommandRunner::success("slow")));
  feed.setFollow(true);
  mainThread.advance(seconds(1));
  for (int i = 0; i < 5; ++i) feed.refresh();
  mainThread.advance(seconds(5));
  EXPECT_EQ(loads(), 1U);
  mainThread.advance(seconds(1));
  EXPECT_EQ(feed.text(), "slow");
  feed.refresh();
  mainThread.runPosted();
  EXPECT_EQ(loads(), 2U);
}

TEST_F(LogsFeedTest, SaysWhyThereIsNothing) {
  tools.installed = {};
  mainThread.runPosted();
  EXPECT_EQ(feed.text(), "Docker is not installed.");
}

TEST_F(LogsTest, AFeedThatGoesDuringALoadLeavesNothingBehind) {
  runner.on({"docker", "logs"}, seconds(7),
            FakeCommandRunner::always(FakeCommandRunner::success("slow")));
  {
    LogsFeed feed(docker, mainThread, [this] { ++changes; });
    feed.setFollow(true);
    mainThread.advance(seconds(1));
  }
  mainThread.advance(seconds(60));
  EXPECT_EQ(loads(), 1U);
  EXPECT_EQ(changes, 0);
}

TEST(LogViewText, FindsWhatTheTailLost) {
  EXPECT_EQ(droppedPrefix("a\nb\nc\n", "a\nb\nc\nd\n"), 0);
  EXPECT_EQ(droppedPrefix("a\nb\nc\n", "b\nc\nd\n"), 2);
  EXPECT_EQ(droppedPrefix("a\nb", "b and more\n"), 2) << "the last line may be unfinished";
  EXPECT_EQ(droppedPrefix("a\nb\n", "x\n"), 4) << "nothing in common";
  EXPECT_EQ(droppedPrefix("a\nb\n", ""), 4);
  EXPECT_EQ(droppedPrefix("", "a\n"), 0);
  EXPECT_EQ(droppedPrefix("ab\n", "b\n"), 3) << "whole lines only";
}

class LogViewTest : public LogsTest {
 protected:
  LogViewTest() {
    view.resize(400, 200);
    view.show();
    view.showText(numbered(1, 300), LogView::Scroll::stay);
    settle();
  }
  QString topLine() { return view.cursorForPosition(QPoint(20, 4)).block().text(); }

  LogView view;
};

TEST_F(LogViewTest, KeepsSelectionAndPlaceWhenTheTailMovesOn) {
  const QTextCursor found = view.document()->find("line 150");
  ASSERT_EQ(found.selectedText(), "line 150");
  view.setTextCursor(found);
  view.verticalScrollBar()->setValue(140);
  const QString top = topLine();
  ASSERT_EQ(top, "line 141");

  view.showText(numbered(21, 320), LogView::Scroll::stay);
  EXPECT_EQ(view.toPlainText(), numbered(21, 320));
  EXPECT_EQ(view.textCursor().selectedText(), "line 150");
  EXPECT_EQ(topLine(), top);
}

TEST_F(LogViewTest, ASelectionAtTheEndDoesNotGrow) {
  view.selectAll();
  view.showText(numbered(1, 310), LogView::Scroll::stay);
  EXPECT_EQ(view.textCursor().selectedText().count(QChar::ParagraphSeparator), 300);
}

TEST_F(LogViewTest, FollowingGoesBackToTheEnd) {
  view.verticalScrollBar()->setValue(3);
  view.showText(numbered(2, 301), LogView::Scroll::toEnd);
  EXPECT_EQ(view.verticalScrollBar()->value(), view.verticalScrollBar()->maximum());
}

TEST_F(LogViewTest, ShowsAnyOtherText) {
  view.showText("bell and \r\nreturns\rhere", LogView::Scroll::stay);
  EXPECT_EQ(view.toPlainText(), "bell and \nreturns\nhere");
  view.showText("bell and \nreturns\nhere\nmore", LogView::Scroll::stay);
  EXPECT_EQ(view.toPlainText(), "bell and \nreturns\nhere\nmore");
  view.showText("", LogView::Scroll::stay);
  EXPECT_EQ(view.toPlainText(), "");
}

class LogsWindowTest : public LogsTest {
 protected:
  LogsWindowTest()
      : window(new LogsWindow(LogsWindowServices{docker, mainThread, workers, dialogs})) {
    window->show();
  }
  ~LogsWindowTest() override { delete window; }

  QString shownLog() { return window->findChild<LogView*>()->toPlainText(); }
  void press(const QString& title) { shown(*window, title)->click(); }

  QPointer<LogsWindow> window;
};

TEST_F(LogsWindowTest, ShowsLoadingThenTheLog) {
  EXPECT_EQ(window->windowTitle(), "Logs");
  EXPECT_EQ(shownLog(), "Loading…");
  press("Copy");
  EXPECT_EQ(QApplication::clipboard()->text(), "Loading…");
  settle();
  EXPECT_EQ(shownLog(), "container says hello\n");
  press("Copy");
  EXPECT_EQ(QApplication::clipboard()->text(), "container says hello\n");
}

TEST_F(LogsWindowTest, RefreshAndFollowLoadAgain) {
  settle();
  press("Refresh");
  settle();
  EXPECT_EQ(loads(), 2U);
  press("Follow");
  mainThread.advance(seconds(4));
  EXPECT_EQ(loads(), 4U);
  EXPECT_TRUE(shown(*window, "Follow")->isChecked());
}

TEST_F(LogsWindowTest, SavesUnderTheProposedName) {
  settle();
  dialogs.path = QString::fromStdString(folder / "tarnwick-logs.txt");
  press("Save…");
  mainThread.advance(seconds(1));
  EXPECT_EQ(dialogs.panels.back().proposedName, "tarnwick-logs.txt");
  EXPECT_EQ(contentOf(folder / "tarnwick-logs.txt"), "container says hello\n");
}

TEST_F(LogsWindowTest, ACancelledSaveWritesNothing) {
  settle();
  press("Save…");
  mainThread.advance(seconds(1));
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

// A file may grow to a few bytes only: to the writer this is a disk that is full.
class FullDisk {
 public:
  FullDisk() {
    std::signal(SIGXFSZ, SIG_IGN);
    ::getrlimit(RLIMIT_FSIZE, &before_);
    rlimit tiny = before_;
    tiny.rlim_cur = 4;
    ::setrlimit(RLIMIT_FSIZE, &tiny);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

TEST_F(LogsWindowTest, AFullDiskLeavesTheOldFile) {
  settle();
  const std::string path = folder.write("tarnwick-logs.txt", "the log of yesterday");
  dialogs.path = QString::fromStdString(path);
  {
    const FullDisk full;
    press("Save…");
    mainThread.advance(seconds(1));
  }
  EXPECT_EQ(contentOf(path), "the log of yesterday");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1)
      << "no half-written file stays behind";
  press("Save…");
  mainThread.advance(seconds(1));
  EXPECT_EQ(contentOf(path), "container says hello\n") << "with room again it works";
}

TEST_F(LogsWindowTest, ClosingItDuringALoadDeletesItAndEndsTheLoop) {
  press("Follow");
  mainThread.advance(milliseconds(2500));
  runner.on({"docker", "logs"}, seconds(7),
            FakeCommandRunner::always(FakeCommandRunner::success("slow")));
  mainThread.advance(seconds(2));
  const std::size_t before = loads();
  window->close();
  settle();
  EXPECT_TRUE(window.isNull());
  mainThread.advance(seconds(60));
  EXPECT_EQ(loads(), before);
}

TEST_F(LogsWindowTest, FitsItsSmallestSizeAlsoInALargeFont) {
  EXPECT_GE(window->minimumSizeHint().width(), 560);
  EXPECT_GE(window->minimumSizeHint().height(), 360);
  const LargerFont larger(1.5);
  window->resize(1, 1);
  settle();
  EXPECT_EQ(cutWidgets(*window), QStringList());
  EXPECT_EQ(namelessControls(*window), QStringList());
}

}  // namespace
}  // namespace tarnwick
