#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QMimeData>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <gtest/gtest.h>

#include "tests/windows/settings_window_fixture.h"
#include "ui/common/elided_label.h"
#include "ui/settings_window/number_field.h"
#include "ui/settings_window/password_section.h"
#include "ui/settings_window/stepper.h"

namespace tarnwick {
namespace {

TEST_F(SettingsWindowTest, HasItsSectionsAndTextsInOrder) {
  settings.setRequirePassword(true);
  settle();
  EXPECT_EQ(window->windowTitle(), "Settings");
  const QStringList expected = {
      "Desktop",
      "Flavor",
      "Selecting a flavor never deletes another flavor's data. Sizes are approximate.",
      "Colima (the Linux VM)",
      "Changes apply the next time Colima starts. The disk size only applies when the VM is first "
      "created.",
      "Ports (127.0.0.1 only)",
      "HTTP port",
      "HTTPS port",
      "Used the next time the desktop is created. Use “Apply settings now” below to recreate it.",
      "Password",
      "User: linux",
      "••••••••••",
      "Stored in your Keychain. The app signs in for you; you only need it for a browser.",
      "Shared Mac folder",
      "Appears in Linux at /config/MacShare. Colima mounts the Mac home folder read-only by "
      "default; a writable mount (colima start --mount folder:w) is marked experimental by Lima. "
      "It takes effect after Colima restarts and the desktop is recreated, and has not been "
      "tested.",
      "Startup",
      "Colima keeps using memory while it runs. Quitting the app never stops the desktop container "
      "by itself.",
      "Maintenance",
      "Update pulls the newest image for this flavor and recreates the container. The data volume "
      "is kept.",
      "About",
      "Tarnwick runs a webtop desktop from linuxserver.io (registry.test/linuxserver/webtop) in a "
      "Docker container on Colima. Nothing leaves your Mac except the image download. The "
      "container's ports are bound to 127.0.0.1 only.",
      "The image is pulled by flavor tag (for example “latest”). The documented version tags are "
      "build hashes that change with every release, so the app does not pin one and you get the "
      "current build at download or Update.",
      "The window loads the https page on port 3001 with a self-signed certificate, which this app "
      "accepts only for 127.0.0.1.",
  };
  EXPECT_EQ(shownTexts(*window), expected);
}

TEST_F(SettingsWindowTest, PicksAFlavorByKeyboardAndFollowsTheStore) {
  ASSERT_EQ(picker().count(), 8);
  EXPECT_EQ(picker().currentText(), "Standard: XFCE on Alpine, about 1 GB");
  picker().setFocus();
  QTest::keyClick(&picker(), Qt::Key_Down);
  EXPECT_EQ(settings.flavorID.get(),
            Flavor::all()[static_cast<std::size_t>(picker().currentIndex())].id);
  EXPECT_NE(settings.flavorID.get(), "alpine-xfce");
  settings.flavorID = Flavor::all()[7].id;
  settle();
  EXPECT_EQ(picker().currentIndex(), 7);
}

TEST_F(SettingsWindowTest, SteppersWriteAtOnce) {
  struct Case {
    const char* name;
    const char* before;
    const char* after;
    const char* key;
    std::int64_t stored;
  };
  for (const Case& c : {Case{"CPUs", "CPUs: 2", "CPUs: 3", "cpu", 3},
                        Case{"Memory", "Memory: 4 GB", "Memory: 5 GB", "memory", 5},
                        Case{"Disk", "Disk: 20 GB", "Disk: 25 GB", "disk", 25}}) {
    auto* stepper = shown<Stepper>(*window, c.name);
    ASSERT_NE(stepper, nullptr) << c.name;
    EXPECT_EQ(stepper->text(), c.before);
    QTest::keyClick(stepper, Qt::Key_Up);
    settle();
    EXPECT_EQ(stepper->text(), c.after);
    EXPECT_EQ(store.integer(c.key), c.stored);
  }
}

TEST_F(SettingsWindowTest, PortsTakeAnyIntegerAndNothingElse) {
  auto* field = shown<NumberField>(*window, "HTTP port");
  EXPECT_EQ(field->text(), "3000");
  field->selectAll();
  QTest::keyClicks(field, "letters");
  settle();
  EXPECT_EQ(settings.httpPort.get(), 3000);
  field->selectAll();
  QTest::keyClicks(field, "70000");
  settle();
  EXPECT_EQ(settings.httpPort.get(), 70000);
  EXPECT_EQ(field->text(), "70000");
  settings.httpsPort = 3101;
  settle();
  EXPECT_EQ(shown<NumberField>(*window, "HTTPS port")->text(), "3101");
}

TEST_F(SettingsWindowTest, SharesAFolderAndStops) {
  const auto path = [this] {
    for (QWidget* widget : window->findChildren<QWidget*>()) {
      if (const auto* label = dynamic_cast<ElidedLabel*>(widget)) return label->text();
    }
    return QString();
  };
  EXPECT_EQ(path(), "None");
  EXPECT_EQ(shown(*window, "Stop sharing"), nullptr);
  press("Share a Mac folder…");
  EXPECT_EQ(settings.shareFolder.get(), "") << "cancelled";
  EXPECT_EQ(dialogs.panels.back().acceptTitle, "Share");
  dialogs.path = "/home/user/to share";
  press("Share a Mac folder…");
  EXPECT_EQ(settings.shareFolder.get(), "/home/user/to share");
  EXPECT_EQ(path(), "/home/user/to share");
  press("Stop sharing");
  EXPECT_EQ(store.string("shareFolder"), "");
  EXPECT_EQ(path(), "None");
}

TEST_F(SettingsWindowTest, LoginToggleShowsWhatTheServiceReports) {
  press("Launch Tarnwick at login");
  EXPECT_TRUE(loginItem.enabled);
  EXPECT_TRUE(isChecked("Launch Tarnwick at login"));
  loginItem.heedsRequests = false;
  press("Launch Tarnwick at login");
  EXPECT_TRUE(isChecked("Launch Tarnwick at login")) << "the service did not turn it off";
}

TEST_F(SettingsWindowTest, ColimaToggleGoesBackWhenBrewFails) {
  runner.on({"brew", "services"}, FakeCommandRunner::success());
  press("Start Colima at login (brew services)");
  EXPECT_TRUE(settings.colimaAtLogin.get());
  EXPECT_TRUE(isChecked("Start Colima at login (brew services)"));

  runner.on({"brew", "services"}, FakeCommandRunner::failure("no such service"));
  press("Start Colima at login (brew services)");
  EXPECT_TRUE(isChecked("Start Colima at login (brew services)"));
  EXPECT_TRUE(shownTexts(*window).contains(
      "brew services could not change Colima's login item: no such service"))
      << "the notice stands in Maintenance";
}

TEST_F(SettingsWindowTest, StopColimaToggleIsStored) {
  press("Stop Colima when I quit");
  EXPECT_TRUE(store.boolean("stopColimaOnQuit"));
}

TEST_F(SettingsWindowTest, EveryControlHasANameAndTheOrderIsThatOfReading) {
  press("Require a password");
  settings.shareFolder = std::string("/home/user/share");
  settle();
  EXPECT_EQ(namelessControls(*window), QStringList());
  int lowest = -1;
  for (QWidget* next = picker().nextInFocusChain(); next != &picker();
       next = next->nextInFocusChain()) {
    const bool takesTab = (next->focusPolicy() & Qt::TabFocus) != 0 && next->isVisible();
    if (!takesTab || next->focusProxy() != nullptr || next->window() != window) continue;
    const int top = next->mapTo(window, next->rect().center()).y();
    EXPECT_GE(top, lowest - 4) << next->accessibleName().toStdString();
    lowest = std::max(lowest, top);
  }
  EXPECT_GT(lowest, 600) << "the walk went through the page";
}

class SettingsFit : public SettingsWindowTest, public testing::WithParamInterface<double> {};

TEST_P(SettingsFit, NothingIsCutAtTheSmallestSize) {
  const LargerFont larger(GetParam());
  press("Require a password");
  press("Show");
  settings.shareFolder = std::string("/a/very/long/path/") + std::string(200, 'x');
  controller.notice = "A rather long notice. " + std::string(60, 'n') + " " + std::string(60, 'm');
  window->resize(1, 1);
  settle();
  EXPECT_GE(window->width(), 560);
  EXPECT_GE(window->height(), 600);
  EXPECT_EQ(cutWidgets(*window), QStringList());
  const auto& scroll = *window->findChild<QScrollArea*>();
  EXPECT_LE(scroll.widget()->width(), scroll.viewport()->width());
  EXPECT_GT(scroll.widget()->height(), scroll.viewport()->height()) << "it scrolls";
}

INSTANTIATE_TEST_SUITE_P(Fonts, SettingsFit, testing::Values(1.0, 1.5));

}  // namespace
}  // namespace tarnwick
