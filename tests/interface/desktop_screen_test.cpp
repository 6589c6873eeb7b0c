#include "ui/desktop/desktop_screen.h"

#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/interface/interface_fixture.h"
#include "ui/desktop/keys_popover.h"

namespace tarnwick {
namespace {

using testing::Contains;
using testing::ElementsAre;

class Desktop : public testing::Test {
 protected:
  Desktop() {
    c.phase = Phase::running;
    c.showDesktop = true;
  }
  DesktopScreen& open() {
    screen = std::make_unique<DesktopScreen>(c, world.windows, services, [this] {
      return WebModule{withModule ? &module : nullptr, "The desktop view is missing."};
    });
    screen->resize(1000, 700);
    screen->show();
    world.settle();
    return *screen;
  }

  InterfaceWorld world;
  DesktopController& c = world.controller;
  RecordingWebServices services;
  FakeWebModule module;
  bool withModule = true;
  std::unique_ptr<DesktopScreen> screen;
};

TEST_F(Desktop, ToolbarHasItsButtonsInOrderAndAllWork) {
  DesktopScreen& shown = open();
  std::vector<std::string> titles;
  for (const QAbstractButton* button : shown.findChildren<QAbstractButton*>()) {
    if (!button->isVisible()) continue;
    titles.push_back(button->text().toStdString());
    EXPECT_TRUE(button->isEnabled());
    EXPECT_FALSE(button->icon().isNull());
  }
  EXPECT_THAT(titles, ElementsAre("Fullscreen", "Reload", "Open in browser", "Logs", "Stop", "Home",
                                  "Keys"));
  findButton(shown, "Logs")->click();
  EXPECT_THAT(world.windows.opened, ElementsAre("logs"));
  findButton(shown, "Open in browser")->click();
  EXPECT_THAT(services.opened, ElementsAre(QUrl("https://127.0.0.1:3001/")));
  findButton(shown, "Home")->click();
  EXPECT_FALSE(c.showDesktop.get());
  EXPECT_EQ(c.phase.get(), Phase::running) << "the container keeps running";
  findButton(shown, "Stop")->click();
  EXPECT_TRUE(c.isStopping.get());
}

TEST_F(Desktop, ReloadReachesTheView) {
  c.reloadToken = 7;
  DesktopScreen& shown = open();
  ASSERT_EQ(module.made.size(), 1U);
  EXPECT_EQ(module.made[0]->url, QUrl("https://127.0.0.1:3001/"));
  EXPECT_EQ(module.made[0]->firstToken, 7);
  findButton(shown, "Reload")->click();
  world.settle();
  findButton(shown, "Reload")->click();
  world.settle();
  EXPECT_THAT(module.made[0]->tokens, ElementsAre(8, 9));
}

TEST_F(Desktop, InvalidAddressIsSaidAndNothingIsOpened) {
  c.settings.httpsPort = 70000;
  DesktopScreen& shown = open();
  EXPECT_THAT(shownTexts(shown),
              Contains("The desktop address is invalid. Check the ports in Settings."));
  findButton(shown, "Open in browser")->click();
  EXPECT_TRUE(services.opened.empty());
  EXPECT_TRUE(module.made.empty());
}

TEST_F(Desktop, AMissingModuleIsExplained) {
  withModule = false;
  EXPECT_THAT(shownTexts(open()), Contains("The desktop view is missing."));
}

TEST_F(Desktop, KeysOpensAndClosesTheHelp) {
  DesktopScreen& shown = open();
  KeysPopover* popover = nullptr;
  for (auto* frame : shown.findChildren<QFrame*>()) {
    if (auto* found = dynamic_cast<KeysPopover*>(frame)) popover = found;
  }
  ASSERT_TRUE(popover);
  EXPECT_FALSE(popover->isVisible());
  findButton(shown, "Keys")->click();
  EXPECT_TRUE(popover->isVisible());
  EXPECT_THAT(shownTexts(*popover), Contains("Keys and the web desktop"));
  EXPECT_TRUE(shown.rect().contains(popover->geometry()));
  findButton(shown, "Keys")->click();
  EXPECT_FALSE(popover->isVisible());

  findButton(shown, "Keys")->click();
  QTest::keyClick(popover, Qt::Key_Escape);
  EXPECT_FALSE(popover->isVisible());
}

}  // namespace
}  // namespace tarnwick
