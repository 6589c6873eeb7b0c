#include "ui/main_window/main_window.h"

#include <QAccessible>
#include <QMenu>
#include <QMenuBar>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

#include "tests/interface/interface_fixture.h"

namespace tarnwick {
namespace {

using testing::ElementsAre;

class MainWindowTest : public testing::Test {
 protected:
  MainWindow& open() {
    const auto webModule = [this] {
      ++moduleAsked;
      return WebModule{&module, {}};
    };
    window = std::make_unique<MainWindow>(c, world.windows, services, webModule, [] {});
    window->show();
    world.settle();
    return *window;
  }
  bool showsDesktop() { return findButton(*window, "Keys") != nullptr; }
  QAction* action(const QString& title) {
    for (QAction* action : window->menuBar()->actions().first()->menu()->actions()) {
      if (action->text().remove('&') == title) return action;
    }
    return nullptr;
  }

  InterfaceWorld world;
  DesktopController& c = world.controller;
  RecordingWebServices services;
  FakeWebModule module;
  int moduleAsked = 0;
  std::unique_ptr<MainWindow> window;
};

TEST_F(MainWindowTest, ShowsTheDesktopOnlyWhileItRuns) {
  open();
  EXPECT_EQ(window->windowTitle(), "Tarnwick");
  EXPECT_EQ(window->centralWidget()->size(), QSize(1000, 700));
  EXPECT_GE(window->minimumSizeHint().width(), 760);
  c.showDesktop = true;
  c.phase = Phase::busy;
  world.settle();
  EXPECT_FALSE(showsDesktop());
  EXPECT_EQ(moduleAsked, 0) << "the engine is not loaded before a desktop is shown";
  c.phase = Phase::running;
  world.settle();
  EXPECT_TRUE(showsDesktop());
  c.showDesktop = false;
  world.settle();
  EXPECT_FALSE(showsDesktop());
  ASSERT_EQ(module.made.size(), 1U);
  EXPECT_FALSE(module.made[0]->alive);
  c.primary();
  world.settle();
  EXPECT_TRUE(showsDesktop());
  EXPECT_EQ(module.made.size(), 2U) << "the page loads afresh";
}

TEST_F(MainWindowTest, MonitorAdoptsARunningDesktopOnce) {
  world.container = ControllerHarness::image;
  world.containerRuns = true;
  open();
  world.mainThread.advance(std::chrono::seconds(1));
  const auto asked = world.httpProbe.asked.size();
  EXPECT_EQ(asked, 1U);
  window->hide();
  window->show();
  world.mainThread.advance(std::chrono::seconds(1));
  EXPECT_EQ(world.httpProbe.asked.size(), asked) << "reopening starts no second monitor";
  EXPECT_EQ(c.phase.get(), Phase::running);
}

TEST_F(MainWindowTest, MenuOffersWhatTheTrayOffers) {
  open();
  std::vector<std::string> titles;
  for (const QAction* each : window->menuBar()->actions().first()->menu()->actions()) {
    if (!each->isSeparator()) titles.push_back(each->text().remove('&').toStdString());
  }
  EXPECT_THAT(titles,
              ElementsAre("Open desktop", "Stop", "Settings", "Logs", "Full screen", "Quit"));
  EXPECT_FALSE(action("Stop")->isEnabled());
  EXPECT_EQ(action("Quit")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
  action("Settings")->trigger();
  action("Logs")->trigger();
  EXPECT_THAT(world.windows.opened, ElementsAre("settings", "logs"));
  action("Full screen")->trigger();
  EXPECT_TRUE(window->isFullScreen());
  action("Full screen")->trigger();
  EXPECT_FALSE(window->isFullScreen());
  action("Open desktop")->trigger();
  world.settle();
  EXPECT_NE(c.phase.get(), Phase::idle);
  EXPECT_TRUE(action("Stop")->isEnabled());
}

TEST_F(MainWindowTest, KeysBelongToTheDesktopWhileItIsShown) {
  open();
  EXPECT_TRUE(window->menuBar()->isVisible());
  c.phase = Phase::running;
  c.showDesktop = true;
  world.settle();
  // Hidden, it takes neither Alt nor the shortcuts of its menu.
  EXPECT_FALSE(window->menuBar()->isVisible());
  EXPECT_THAT(window->actions(), testing::Contains(action("Full screen")));
  c.phase = Phase::idle;
  world.settle();
  EXPECT_TRUE(window->menuBar()->isVisible());
}

/// Every control that assistive tools meet below `node` and that says nothing of itself.
void collectNameless(QAccessibleInterface* node, std::vector<std::string>& found) {
  const std::set<QAccessible::Role> controls = {
      QAccessible::Button,       QAccessible::CheckBox,  QAccessible::ComboBox,
      QAccessible::EditableText, QAccessible::Graphic,   QAccessible::List,
      QAccessible::MenuBar,      QAccessible::MenuItem,  QAccessible::PopupMenu,
      QAccessible::ProgressBar,  QAccessible::ScrollBar, QAccessible::AlertMessage};
  if (controls.contains(node->role()) && node->text(QAccessible::Name).isEmpty()) {
    found.push_back("role " + std::to_string(node->role()));
  }
  for (int i = 0; i < node->childCount(); ++i) {
    if (QAccessibleInterface* child = node->child(i)) collectNameless(child, found);
  }
}

TEST_F(MainWindowTest, EveryControlHasAnAccessibleName) {
  open();
  c.phase = Phase::busy;
  c.errorSummary = "The disk is full.";
  world.settle();
  std::vector<std::string> nameless;
  collectNameless(QAccessible::queryAccessibleInterface(window.get()), nameless);
  EXPECT_THAT(nameless, ElementsAre());
  c.phase = Phase::running;
  c.showDesktop = true;
  world.settle();
  ASSERT_TRUE(showsDesktop());
  collectNameless(QAccessible::queryAccessibleInterface(window.get()), nameless);
  EXPECT_THAT(nameless, ElementsAre());
}

TEST_F(MainWindowTest, AnnouncesErrorsNoticesAndPhases) {
  open();
  auto* announcer = findShown<Announcer>(*window);
  ASSERT_TRUE(announcer);
  EXPECT_EQ(announcer->latest(), "Tarnwick: Stopped");
  c.phase = Phase::busy;
  world.settle();
  EXPECT_EQ(announcer->latest(), "Tarnwick: Starting…");
  c.errorSummary = "The disk is full.";
  c.phase = Phase::idle;
  world.settle();
  EXPECT_EQ(announcer->latest(), "The disk is full.");
  c.notice = "Cancelled.";
  world.settle();
  EXPECT_EQ(announcer->latest(), "Cancelled.");
}

TEST(RenderScheduler, RendersOnceForAllChangesOfATurn) {
  ChangeSignal changes;
  Published<int> value(changes, 0);
  int renders = 0;
  int seen = 0;
  RenderScheduler scheduler([&] {
    ++renders;
    seen = value.get();
  });
  scheduler.observe(changes);
  for (int i = 1; i <= 100; ++i) value = i;
  EXPECT_EQ(renders, 0) << "not inside the announcement";
  runEventLoop();
  EXPECT_EQ(renders, 1);
  EXPECT_EQ(seen, 100);
  value = 7;
  runEventLoop();
  EXPECT_EQ(seen, 7);
}

TEST(WindowsTest, EachExistsOnceAndComesBackAfterItWasDeleted) {
  Windows windows;
  int made = 0;
  windows.add("settings", [&] {
    ++made;
    auto* window = new QWidget;
    window->setAttribute(Qt::WA_DeleteOnClose);
    return window;
  });
  windows.openWindow("unknown");
  windows.openWindow("settings");
  windows.openWindow("settings");
  EXPECT_EQ(made, 1);
  // From the event loop, as a person's click comes.
  QTimer::singleShot(0, windows.find("settings"), &QWidget::close);
  runEventLoop();
  EXPECT_FALSE(windows.find("settings"));
  windows.openWindow("settings");
  EXPECT_EQ(made, 2);
}

}  // namespace
}  // namespace tarnwick
