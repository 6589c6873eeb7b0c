#include <QPointer>

#include "tests/windows/settings_window_fixture.h"

namespace tarnwick {
namespace {

const QStringList maintenance = {"Stop Colima so new settings apply", "Update image and recreate",
                                 "Apply settings now", "Remove this flavor…"};

struct MaintenanceCase {
  Phase phase;
  std::set<std::string> installed;
  bool pickerEnabled;
  bool maintenanceEnabled;
};

class MaintenanceRule : public SettingsWindowTest,
                        public testing::WithParamInterface<MaintenanceCase> {};

TEST_P(MaintenanceRule, DecidesWhatMayBePressed) {
  const MaintenanceCase& c = GetParam();
  tools.installed = c.installed;
  controller.phase = c.phase;
  settle();
  EXPECT_EQ(picker().isEnabled(), c.pickerEnabled);
  for (const QString& name : maintenance) {
    EXPECT_EQ(shown(*window, name)->isEnabled(), c.maintenanceEnabled) << name.toStdString();
  }
  EXPECT_TRUE(shown(*window, "Reveal app folder")->isEnabled());
}

const std::set<std::string> both = {"docker", "colima"};
INSTANTIATE_TEST_SUITE_P(States, MaintenanceRule,
                         testing::Values(MaintenanceCase{Phase::idle, both, true, true},
                                         MaintenanceCase{Phase::busy, both, false, false},
                                         MaintenanceCase{Phase::running, both, false, true},
                                         MaintenanceCase{Phase::idle, {"docker"}, true, false},
                                         MaintenanceCase{
                                             Phase::running, {"colima"}, false, false}));

TEST_F(SettingsWindowTest, SeesToolsThatCameWhileTheUserWasElsewhere) {
  tools.installed = {};
  open();
  EXPECT_FALSE(shown(*window, "Apply settings now")->isEnabled());
  tools.installed = both;
  QEvent activation(QEvent::WindowActivate);
  QApplication::sendEvent(window, &activation);
  settle();
  EXPECT_TRUE(shown(*window, "Apply settings now")->isEnabled());
}

TEST_F(SettingsWindowTest, MaintenanceButtonsCallTheirOperations) {
  press("Reveal app folder");
  EXPECT_EQ(workspace.revealedFolders, std::vector<std::string>{paths.supportDir()});

  controller.phase = Phase::running;
  controller.showDesktop = true;
  settle();
  shown(*window, "Apply settings now")->click();
  EXPECT_FALSE(controller.showDesktop.get());
  EXPECT_EQ(controller.phase.get(), Phase::busy);
  EXPECT_TRUE(runToEnd());
  EXPECT_TRUE(streams.calls.empty()) << "applying pulls nothing";
  settle();

  shown(*window, "Update image and recreate")->click();
  EXPECT_TRUE(runToEnd());
  ASSERT_EQ(streams.calls.size(), 1U);
  EXPECT_EQ(streams.calls.front().args.front(), "pull");
  settle();

  shown(*window, "Stop Colima so new settings apply")->click();
  EXPECT_TRUE(controller.isStopping.get());
  settle();
  EXPECT_EQ(runner.count({"colima", "stop"}), 1U);
  EXPECT_TRUE(shownTexts(*window).contains(
      "Colima was stopped. Press the main button to start it again with the new settings."));
}

TEST_F(SettingsWindowTest, RemovingTheFlavorAsksFirst) {
  runner.on({"docker", "volume", "rm"}, FakeCommandRunner::success());
  settings.flavorID = std::string("unknown");
  press("Remove this flavor…");
  EXPECT_EQ(dialogs.questions.back().kind, ConfirmationKind::destructive);
  EXPECT_EQ(runner.count({"docker", "volume", "rm"}), 0U);
  dialogs.agrees = true;
  press("Remove this flavor…");
  EXPECT_EQ(runner.count({"docker", "volume", "rm", "tarnwick-config-alpine-xfce"}), 1U);
}

}  // namespace
}  // namespace tarnwick
