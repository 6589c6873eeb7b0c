#include "ui/settings_window/secret_clipboard.h"

#include <QGuiApplication>
#include <QMimeData>
#include <gtest/gtest.h>

#include "tests/support/virtual_main_thread.h"

namespace tarnwick {
namespace {

using std::chrono::seconds;

class SecretClipboardTest : public testing::Test {
 protected:
  QClipboard& clipboard = *QGuiApplication::clipboard();
  VirtualMainThread mainThread;
};

TEST_F(SecretClipboardTest, MarksTheContentAsSecret) {
  SecretClipboard(clipboard, mainThread).copy("abc");
  EXPECT_EQ(clipboard.text(), "abc");
  EXPECT_EQ(clipboard.mimeData()->data("x-kde-passwordManagerHint"), "secret");
}

TEST_F(SecretClipboardTest, ClearsAfterAMinuteAlsoWhenTheCopierIsGone) {
  SecretClipboard(clipboard, mainThread).copy("abc");
  mainThread.advance(seconds(59));
  EXPECT_EQ(clipboard.text(), "abc");
  mainThread.advance(seconds(1));
  EXPECT_EQ(clipboard.text(), "");
}

TEST_F(SecretClipboardTest, LeavesWhatTheUserCopiedMeanwhile) {
  SecretClipboard(clipboard, mainThread).copy("abc");
  clipboard.setText("abc and more");
  mainThread.advance(seconds(61));
  EXPECT_EQ(clipboard.text(), "abc and more");
}

TEST_F(SecretClipboardTest, AnotherCopyStartsTheMinuteAnew) {
  SecretClipboard(clipboard, mainThread).copy("abc");
  mainThread.advance(seconds(40));
  SecretClipboard(clipboard, mainThread).copy("abc");
  mainThread.advance(seconds(40));
  EXPECT_EQ(clipboard.text(), "abc") << "the first copy's minute is over, the second's is not";
  mainThread.advance(seconds(20));
  EXPECT_EQ(clipboard.text(), "");
}

}  // namespace
}  // namespace tarnwick
