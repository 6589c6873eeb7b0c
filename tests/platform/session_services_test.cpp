#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <csignal>
#include <gmock/gmock.h>

#include "platform/qt/freedesktop_notifications.h"
#include "platform/qt/tray_host_watch.h"
#include "tests/platform/desktop_service.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// A session bus of its own, an event loop on it, and somebody who plays the user.
class SessionServices : public testing::Test {
 protected:
  void SetUp() override {
    if (!bus.isUp()) GTEST_SKIP() << "no session bus here";
  }
  void TearDown() override {
    for (const char* whose : {"program", "user"}) {
      QDBusConnection::disconnectFromBus(QLatin1String(whose));
    }
  }
  QDBusConnection connect(const char* whose) {
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    return QDBusConnection::connectToBus(address, QLatin1String(whose));
  }

  template <typename Condition>
  static bool loopUntil(Condition holds) {
    QElapsedTimer timer;
    timer.start();
    while (!holds() && timer.elapsed() < 5000) {
      QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return holds();
  }
  static void loopFor(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    loopUntil([&] { return timer.elapsed() >= milliseconds; });
  }

  /// Orders the service to act as its user does.
  void order(const char* service, const char* what, const QVariant& argument) {
    QDBusMessage call = QDBusMessage::createMethodCall(QLatin1String(service), "/test",
                                                       "tarnwick.Test", QLatin1String(what));
    call.setArguments({argument});
    connect("user").call(call, QDBus::BlockWithGui, 3000);
  }

  int argc = 1;
  char programName[5] = "test";
  char* argv[2] = {programName, nullptr};
  QCoreApplication application{argc, argv};
  PrivateBus bus;
};

class TrayHosts : public SessionServices {
 protected:
  void watch() {
    watcher = std::make_unique<TrayHostWatch>([this](bool there) { seen.push_back(there); },
                                              connect("program"));
  }
  bool sees(const std::vector<bool>& expected) {
    return loopUntil([&] { return seen == expected; });
  }

  std::vector<bool> seen;
  std::unique_ptr<TrayHostWatch> watcher;
};

TEST_F(TrayHosts, AreSeenWheneverTheyComeAndGo) {
  watch();
  EXPECT_TRUE(sees({false})) << "absent";
  {
    const DesktopService late("tray");
    if (!late.isUp()) GTEST_SKIP() << "no python3-gi here";
    EXPECT_TRUE(sees({false, true}));
  }
  EXPECT_TRUE(sees({false, true, false})) << "dead";
  const DesktopService returned("tray");
  EXPECT_TRUE(sees({false, true, false, true}));

  // Its keeper stays when only the panel goes.
  order("org.kde.StatusNotifierWatcher", "SetHost", false);
  EXPECT_TRUE(sees({false, true, false, true, false}));
  order("org.kde.StatusNotifierWatcher", "SetHost", true);
  EXPECT_TRUE(sees({false, true, false, true, false, true}));
}

TEST_F(TrayHosts, OneThatIsThereBeforeUsIsSeenAndOneThatHangsIsNone) {
  const DesktopService early("tray");
  if (!early.isUp()) GTEST_SKIP() << "no python3-gi here";
  watch();
  EXPECT_TRUE(sees({true}));
  watcher.reset();
  seen.clear();
  early.process().send(SIGSTOP);
  QElapsedTimer timer;
  timer.start();
  watch();
  EXPECT_LT(timer.elapsed(), 100) << "nobody waits for it";
  loopFor(200);
  EXPECT_THAT(seen, IsEmpty());
}

TEST_F(TrayHosts, ABusThatIsNotThereOrEndsIsNoHarm) {
  watch();
  EXPECT_TRUE(sees({false}));
  bus.end();
  loopFor(100);
  watcher = std::make_unique<TrayHostWatch>(
      [this](bool there) { seen.push_back(there); },
      QDBusConnection::connectToBus("unix:path=/nonexistent", "none"));
  EXPECT_TRUE(sees({false, false}));
}

class Notifications : public SessionServices {
 protected:
  void SetUp() override {
    SessionServices::SetUp();
    notifications = std::make_unique<FreedesktopNotifications>(connect("program"));
  }
  DesktopNotifications::Clicked countClick() {
    return [this](const std::string&) { ++clicks; };
  }
  static bool waitFor(const DesktopService& service, const std::string& part) {
    return loopUntil([&] { return service.record().find(part) != std::string::npos; });
  }

  int clicks = 0;
  std::unique_ptr<FreedesktopNotifications> notifications;
};

TEST_F(Notifications, ReplaceOneAnotherAndAreClicked) {
  const DesktopService service("notifications");
  if (!service.isUp()) GTEST_SKIP() << "no python3-gi here";
  notifications->show("First", "Text & <b>no markup</b>", countClick());
  ASSERT_TRUE(waitFor(service, "\"First\""));
  EXPECT_THAT(service.record(),
              HasSubstr(R"(["Tarnwick", 0, "tarnwick", "First", )"
                        R"("Text &amp; &lt;b&gt;no markup&lt;/b&gt;", ["default", )"));
  loopFor(100);
  notifications->show("Second", "Text", countClick());
  ASSERT_TRUE(waitFor(service, R"(["Tarnwick", 1, "tarnwick", "Second")"));
  loopFor(100);

  order("org.freedesktop.Notifications", "Click", 99U);
  loopFor(100);
  EXPECT_EQ(clicks, 0) << "another program's";
  order("org.freedesktop.Notifications", "Click", 1U);
  EXPECT_TRUE(loopUntil([this] { return clicks == 1; }));
  notifications->withdraw();
  loopFor(100);
  EXPECT_THAT(service.record(), Not(HasSubstr("CloseNotification"))) << "the click has closed it";

  notifications->show("Third", "Text", countClick());
  notifications->withdraw();
  loopFor(100);
  EXPECT_THAT(service.record(), Not(HasSubstr("Third")));
  notifications->show("Fourth", "Text", countClick());
  ASSERT_TRUE(waitFor(service, "Fourth"));
  loopFor(100);
  notifications->withdraw();
  EXPECT_TRUE(waitFor(service, R"("CloseNotification", "arguments": [2])"));
}

TEST_F(Notifications, WithoutAServiceOrWithOneThatHangsNothingHappens) {
  QElapsedTimer timer;
  timer.start();
  notifications->show("Nobody", "shows this", countClick());
  loopFor(100);
  const DesktopService service("notifications");
  if (!service.isUp()) GTEST_SKIP() << "no python3-gi here";
  service.process().send(SIGSTOP);
  timer.start();
  notifications->show("Hanging", "Text", countClick());
  notifications->withdraw();
  notifications->show("Hanging", "Text", countClick());
  EXPECT_LT(timer.elapsed(), 100);
  loopFor(100);
  bus.end();
  loopFor(50);
  notifications->show("No bus", "Text", countClick());
  notifications->withdraw();
  loopFor(50);
  EXPECT_EQ(clicks, 0);
}

}  // namespace
}  // namespace tarnwick
