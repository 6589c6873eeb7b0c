#include "ui/home/home_screen.h"

#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QProgressBar>
#include <QScrollArea>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/interface/interface_fixture.h"
#include "ui/common/elided_label.h"
#include "ui/home/home_texts.h"

namespace tarnwick {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr const char* firstRunText =
    "Downloads about 1 GB once, then starts in a few seconds. Nothing to type.";
constexpr const char* installHintText =
    "Colima and Docker are not installed. The button will offer to install them.";

class Home : public testing::Test {
 protected:
  void show() {
    screen.resize(1000, 700);
    screen.show();
    world.settle();
  }
  std::vector<std::string> tail() {
    std::vector<std::string> lines;
    for (QWidget* widget : screen.findChildren<QWidget*>()) {
      auto* line = dynamic_cast<ElidedLabel*>(widget);
      if (line && line->isVisible()) lines.push_back(line->text().toStdString());
    }
    return lines;
  }
  QComboBox& picker() { return *screen.findChild<QComboBox*>(); }

  InterfaceWorld world;
  DesktopController& c = world.controller;
  HomeScreen screen{c, world.windows};
};

struct State {
  std::string name;
  Phase phase;
  bool launched = false;
  bool installing = false;
  bool stopping = false;
  std::string title;
  bool mainEnabled = true;
};

class HomeInState : public Home, public testing::WithParamInterface<State> {};

TEST_P(HomeInState, ShowsTheRightControls) {
  const State& state = GetParam();
  if (state.launched) c.settings.markLaunched("alpine-xfce");
  c.phase = state.phase;
  c.installing = state.installing;
  c.isStopping = state.stopping;
  show();
  QAbstractButton* main = findButton(screen, QString::fromStdString(state.title));
  ASSERT_TRUE(main);
  EXPECT_EQ(main->isEnabled(), state.mainEnabled);
  EXPECT_GE(main->width(), 280);
  EXPECT_EQ(picker().isEnabled(), state.phase == Phase::idle);
  EXPECT_EQ(findButton(screen, "Stop") != nullptr, state.phase == Phase::running);
  EXPECT_EQ(findButton(screen, "Cancel") != nullptr, state.phase == Phase::busy);
  const bool firstRun = state.phase == Phase::idle && !state.launched;
  const auto texts = shownTexts(screen);
  EXPECT_EQ(std::ranges::count(texts, firstRunText), firstRun ? 1 : 0);
  EXPECT_THAT(texts, Not(Contains(installHintText)));
  const bool checklist = state.phase == Phase::busy && !state.installing;
  EXPECT_EQ(std::ranges::count(texts, "Image downloaded"), checklist ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    Phases, HomeInState,
    testing::Values(State{"idleNew", Phase::idle, false, false, false, "Launch Linux", true},
                    State{"idleKnown", Phase::idle, true, false, false, "Open desktop", true},
                    State{"starting", Phase::busy, false, false, false, "Starting…", false},
                    State{"installing", Phase::busy, false, true, false, "Installing…", false},
                    State{"running", Phase::running, true, false, false, "Open desktop", true},
                    State{"stopping", Phase::running, true, false, true, "Open desktop", false}),
    [](const auto& param) { return param.param.name; });

TEST_F(Home, PickerListsTheCatalogAndStoresTheChoice) {
  show();
  ASSERT_EQ(picker().count(), 8);
  EXPECT_EQ(picker().currentText(), "Standard: XFCE on Alpine, about 1 GB");
  EXPECT_EQ(picker().itemData(7).toString().toStdString(), Flavor::all()[7].id);
  picker().setCurrentIndex(3);
  emit picker().activated(3);
  EXPECT_EQ(c.settings.flavorID.get(), Flavor::all()[3].id);
  c.settings.flavorID = "no-such-flavor";
  world.settle();
  EXPECT_EQ(picker().currentIndex(), -1);
  EXPECT_THAT(shownTexts(screen), Contains(firstRunText));
}

TEST_F(Home, SaysThatToolsAreMissingOnlyWhileIdle) {
  world.tools.installed = {"docker", "brew"};
  show();
  EXPECT_THAT(shownTexts(screen), Contains(installHintText));
  c.phase = Phase::running;
  world.settle();
  EXPECT_THAT(shownTexts(screen), Not(Contains(installHintText)));
}

TEST_F(Home, ProgressCardFollowsTheRun) {
  c.phase = Phase::busy;
  c.progressText = "Downloading the image…";
  c.log.mutate([](LogText& log) {
    for (int i = 0; i < 10; ++i) {
      log.appendLine("line " + std::to_string(i));
      log.appendLine("");
    }
  });
  show();
  auto* bar = findShown<QProgressBar>(screen);
  ASSERT_TRUE(bar);
  EXPECT_EQ(bar->maximum(), 0) << "no measure: indeterminate";
  EXPECT_THAT(tail(), ElementsAre("line 4", "line 5", "line 6", "line 7", "line 8", "line 9"));
  c.progress = 0.42;
  c.log = [] {
    LogText log;
    log.appendLine("one");
    log.appendLine("two");
    return log;
  }();
  world.settle();
  EXPECT_EQ(bar->value(), 42);
  EXPECT_EQ(bar->maximum(), 100);
  EXPECT_THAT(tail(), ElementsAre("one", "two"));
  EXPECT_THAT(shownTexts(screen), Contains("Downloading the image…"));
}

TEST_F(Home, ChecklistSaysItsStateInWords) {
  auto stages = initialStages();
  stages[0].state = StageState::done;
  stages[1].state = StageState::active;
  c.stages = stages;
  c.phase = Phase::busy;
  show();
  const auto named = [this](const QString& name) {
    for (QLabel* label : screen.findChildren<QLabel*>()) {
      if (label->isVisible() && label->accessibleName() == name) return true;
    }
    return false;
  };
  EXPECT_TRUE(named("Colima ready: done"));
  EXPECT_TRUE(named("Image downloaded: in progress"));
  EXPECT_TRUE(named("Ready: waiting"));
  stages[1].state = StageState::failed;
  c.stages = stages;
  c.phase = Phase::idle;
  world.settle();
  EXPECT_TRUE(named("Image downloaded: failed")) << "a failed run leaves its checklist";
  EXPECT_FALSE(findShown<QProgressBar>(screen));
  c.stages = initialStages();
  world.settle();
  EXPECT_FALSE(named("Ready: waiting"));
}

TEST_F(Home, ButtonsCallTheController) {
  show();
  findButton(screen, "Settings")->click();
  findButton(screen, "Logs")->click();
  EXPECT_THAT(world.windows.opened, ElementsAre("settings", "logs"));
  findButton(screen, "Launch Linux")->click();
  EXPECT_EQ(c.phase.get(), Phase::busy);
  world.settle();
  if (QAbstractButton* cancel = findButton(screen, "Cancel")) cancel->click();
  ASSERT_TRUE(world.runToEnd());
  world.settle();
  EXPECT_THAT(shownTexts(screen), Contains("Cancelled."));
}

TEST_F(Home, KeyboardFocusMovesToTheButtonThatAnswersTheLast) {
  show();
  screen.activateWindow();
  screen.focusMainButton();
  ASSERT_TRUE(findButton(screen, "Launch Linux")->hasFocus());
  c.phase = Phase::busy;
  world.settle();
  QAbstractButton* cancel = findButton(screen, "Cancel");
  EXPECT_TRUE(cancel->hasFocus());
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
  QApplication::sendEvent(cancel, &held);
  world.settle();
  EXPECT_EQ(c.phase.get(), Phase::busy) << "the key that started is not meant to cancel";
  c.phase = Phase::idle;
  world.settle();
  EXPECT_TRUE(findButton(screen, "Launch Linux")->hasFocus());
}

TEST_F(Home, InstallOfferIsShownOnceAndClosingItClearsTheQuestion) {
  world.tools.installed = {"brew"};
  show();
  findButton(screen, "Launch Linux")->click();
  world.settle();
  c.notice = "something else changes";
  world.settle();
  const auto dialogs = screen.findChildren<QDialog*>();
  ASSERT_EQ(dialogs.size(), 1);
  dialogs.first()->reject();
  EXPECT_FALSE(c.askInstall.get());
  EXPECT_EQ(c.phase.get(), Phase::idle);
}

TEST_F(Home, PortConflictSheetGivesWayToTheNextConflict) {
  show();
  c.portConflict = PortConflict{"one", 3000, "python3", 3100, 3101};
  world.settle();
  ASSERT_EQ(screen.findChildren<QDialog*>().size(), 1);
  c.portConflict = PortConflict{"two", 3001, "nginx", 3200, 3201};
  world.settle();
  const auto sheets = screen.findChildren<QDialog*>();
  ASSERT_EQ(sheets.size(), 1);
  EXPECT_TRUE(findButton(*sheets.first(), "Use 3200 and 3201"));
  ASSERT_TRUE(c.portConflict.get()) << "the question that is shown is still open";
  sheets.first()->reject();
  EXPECT_FALSE(c.portConflict.get());
}

TEST_F(Home, ColumnIsCentredAndNothingIsCutAtTheMinimumSize) {
  c.phase = Phase::busy;
  c.progressText = std::string(400, 'x') + " " + std::string(200, 'y');
  c.errorSummary = "A long explanation of what went wrong. " + std::string(300, 'z');
  show();
  screen.resize(760, 540);
  world.settle();
  auto* scroll = screen.findChild<QScrollArea*>();
  EXPECT_LE(scroll->widget()->width(), scroll->viewport()->width()) << "no sideways scrolling";
  screen.resize(1600, 1000);
  world.settle();
  auto* main = findButton(screen, "Starting…");
  const int middle = main->mapTo(&screen, main->rect().center()).x();
  EXPECT_NEAR(middle, scroll->viewport()->width() / 2, 2);
  EXPECT_LE(findShown<QProgressBar>(screen)->width(), 640 - 2 * 28 - 2 * 18);
}

}  // namespace
}  // namespace tarnwick
