#include "platform/session_bus.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "tests/platform/private_bus.h"
#include "tests/support/temporary_folder.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

/// A socket that accepts and never says a word.
class SilentListener {
 public:
  explicit SilentListener(const std::string& path, int backlog = 4)
      : handle_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(::bind(handle_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(handle_, backlog), 0);
  }
  SilentListener(const SilentListener&) = delete;
  SilentListener& operator=(const SilentListener&) = delete;
  ~SilentListener() { ::close(handle_); }

 private:
  int handle_;
};

std::string sessionAddress() {
  const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  return address != nullptr ? address : "";
}

TEST(SessionBus, OneThatAcceptsAndSaysNothingIsSilent) {
  const TemporaryFolder folder;
  const std::string silent = "unix:path=" + (folder / "a%62c");
  const SilentListener listener(folder / "abc", 0);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(busIsSilent(silent, 50ms));
  EXPECT_GE(std::chrono::steady_clock::now() - start, 45ms);
  EXPECT_TRUE(busIsSilent("unix:path=/nonexistent;" + silent + ",guid=0", 50ms));
  EXPECT_TRUE(busIsSilent(silent, 50ms)) << "its queue is full by now";

  ::setenv("DBUS_SESSION_BUS_ADDRESS", silent.c_str(), 1);
  forgoSilentSessionBus(50ms);
  EXPECT_EQ(sessionAddress(), "disabled:");
  ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
}

TEST(SessionBus, OneThatIsNotThereIsNotSilent) {
  for (const char* address : {"", ";", "unix:", "unix:path=/nonexistent", "disabled:",
                              "tcp:host=localhost,port=1", "unix:abstract=tarnwick-nobody"}) {
    EXPECT_FALSE(busIsSilent(address, 5s)) << address;
  }
}

TEST(SessionBus, ABusThatAnswersIsKept) {
  const PrivateBus bus;
  if (!bus.isUp()) GTEST_SKIP() << "no session bus here";
  const std::string before = sessionAddress();
  const auto start = std::chrono::steady_clock::now();
  forgoSilentSessionBus(5s);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
  EXPECT_EQ(sessionAddress(), before);
}

}  // namespace
}  // namespace tarnwick
