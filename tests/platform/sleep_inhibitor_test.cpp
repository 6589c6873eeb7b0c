#include <csignal>
#include <cstdlib>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/desktop_sleep_inhibitor.h"
#include "tests/platform/desktop_service.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

constexpr const char* reason = "Tarnwick downloads a desktop";

class Inhibiting : public testing::Test {
 protected:
  void SetUp() override {
    if (!bus.isUp()) GTEST_SKIP() << "no session bus here";
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", std::getenv("DBUS_SESSION_BUS_ADDRESS"), 1);
  }
  void TearDown() override { ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS"); }

  /// As the program does: on a worker thread, and let go of on another one.
  SleepInhibitor::Hold hold() {
    SleepInhibitor::Hold result;
    std::thread([&] { result = inhibitor.hold(reason); }).join();
    return result;
  }

  PrivateBus bus;
  DesktopSleepInhibitor inhibitor{3s};
};

TEST_F(Inhibiting, LastsUntilItIsLetGoOf) {
  struct Case {
    const char* kind;
    const char* arguments;
  };
  for (const Case& one :
       {Case{"login", R"(["sleep:idle", "Tarnwick", "Tarnwick downloads a desktop", "block"])"},
        Case{"session", R"(["Tarnwick", 0, "Tarnwick downloads a desktop", 4])"},
        Case{"power", R"(["Tarnwick", "Tarnwick downloads a desktop"])"}}) {
    const bool byLogin = std::string(one.kind) == "login";
    // Who refuses is passed over for the next one.
    std::optional<DesktopService> refusing;
    if (!byLogin) refusing.emplace("login", "refuse");
    const DesktopService asked(one.kind);
    if (!asked.isUp()) GTEST_SKIP() << "no python3-gi here";
    SleepInhibitor::Hold held = hold();
    ASSERT_NE(held, nullptr) << one.kind;
    EXPECT_THAT(asked.record(), HasSubstr(one.arguments));
    if (refusing) {
      EXPECT_THAT(refusing->record(), HasSubstr("Inhibit"));
    }
    std::this_thread::sleep_for(50ms);
    EXPECT_THAT(asked.record(), Not(HasSubstr("released")));
    held.reset();
    EXPECT_TRUE(asked.waitForRecord("released")) << one.kind;
  }
}

TEST_F(Inhibiting, EndsWithAProcessThatIsKilled) {
  for (const char* kind : {"login", "session"}) {
    const DesktopService service(kind);
    if (!service.isUp()) GTEST_SKIP() << "no python3-gi here";
    const pid_t child = ::fork();
    if (child == 0) {
      const SleepInhibitor::Hold held = inhibitor.hold(reason);
      ::pause();
      ::_exit(held == nullptr ? 1 : 0);
    }
    EXPECT_TRUE(service.waitForRecord("Inhibit"));
    std::this_thread::sleep_for(100ms);
    EXPECT_THAT(service.record(), Not(HasSubstr("released")));
    ::kill(child, SIGKILL);
    EXPECT_TRUE(service.waitForRecord("released")) << kind;
    ::waitpid(child, nullptr, 0);
  }
}

TEST_F(Inhibiting, NobodyToAskIsNoHarm) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(hold(), nullptr);
  const DesktopService refusing("session", "refuse");
  EXPECT_EQ(hold(), nullptr);
  bus.end();
  EXPECT_EQ(hold(), nullptr);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 3s);
}

TEST_F(Inhibiting, OneThatNeverAnswersIsGivenUp) {
  const DesktopService service("session");
  if (!service.isUp()) GTEST_SKIP() << "no python3-gi here";
  service.process().send(SIGSTOP);
  DesktopSleepInhibitor hasty(200ms);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(hasty.hold(reason), nullptr);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 3s);
}

}  // namespace
}  // namespace tarnwick
