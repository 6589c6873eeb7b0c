#include "ui/tray/tray.h"

#include <QDialog>
#include <gmock/gmock.h>

#include "tests/windows/windows_fixture.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class TrayTest : public testing::Test, public WindowsWorld {
 protected:
  TrayTest()
      : tray(
            controller, windows, [this] { return hasWindow; }, 50ms) {}
  void outlastThePatience() { QTest::qWait(120); }

  bool hasWindow = false;
  Tray tray;
};

TEST_F(TrayTest, NobodyIsLostWhereThereIsNone) {
  EXPECT_FALSE(tray.item());
  outlastThePatience();
  EXPECT_THAT(windows.opened, ElementsAre(mainWindowId));
  outlastThePatience();
  EXPECT_EQ(windows.opened.size(), 1U) << "once: a window that the user closes stays closed";
}

TEST_F(TrayTest, OneThatComesLateTakesTheItem) {
  hasWindow = true;
  outlastThePatience();
  tray.hostChanged(true);
  ASSERT_TRUE(tray.item());
  EXPECT_TRUE(tray.item()->icon().isVisible());
  hasWindow = false;
  outlastThePatience();
  EXPECT_THAT(windows.opened, IsEmpty()) << "the tray is the way in";
}

TEST_F(TrayTest, OneThatDiesWhileNoWindowIsOpenLeavesTheMainWindow) {
  tray.hostChanged(true);
  tray.hostChanged(false);
  tray.hostChanged(true);
  outlastThePatience();
  EXPECT_THAT(windows.opened, IsEmpty()) << "a panel may be started again";

  hasWindow = true;
  tray.hostChanged(false);
  outlastThePatience();
  EXPECT_THAT(windows.opened, IsEmpty());
  tray.hostChanged(true);
  hasWindow = false;
  tray.hostChanged(false);
  outlastThePatience();
  EXPECT_THAT(windows.opened, ElementsAre(mainWindowId));
  tray.hostChanged(true);
  EXPECT_TRUE(tray.item()->icon().isVisible());
}

TEST_F(TrayTest, MenusAndHiddenWindowsAreNoWindows) {
  QWidget window;
  QMenu menu;
  menu.addAction("item");
  menu.popup(QPoint(0, 0));
  EXPECT_FALSE(hasWindowOnShow());
  window.show();
  EXPECT_TRUE(hasWindowOnShow());
  window.hide();
  QDialog dialog;
  dialog.show();
  EXPECT_TRUE(hasWindowOnShow());
}

}  // namespace
}  // namespace tarnwick
