#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

#include "platform/libsecret_service.h"
#include "tests/platform/private_bus.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

class SecretStore : public ::testing::Test {
 protected:
  /// Calls come from a worker thread in the program, so they do here.
  template <typename Call>
  auto onAnotherThread(Call call) {
    std::optional<decltype(call())> result;
    const auto start = std::chrono::steady_clock::now();
    std::thread([&] { result = call(); }).join();
    took = std::chrono::steady_clock::now() - start;
    return *result;
  }
  SecretAnswer find() { return findBy(service); }
  SecretAnswer findBy(LibsecretService& asked) {
    return onAnotherThread([this, &asked] { return asked.find(key); });
  }

  PrivateBus bus;
  LibsecretService service{3s};
  LibsecretService hasty{300ms};
  SecretKey key{"Tarnwick", "webtop-password"};
  std::chrono::steady_clock::duration took{};
};

class Keyring : public SecretStore {
 protected:
  void SetUp() override {
    if (!bus.isUp() || !bus.startKeyring("pass")) {
      GTEST_SKIP() << "no session bus or no gnome-keyring here";
    }
  }
};

TEST_F(Keyring, KeepsOneSecretPerKey) {
  EXPECT_EQ(find().status, SecretStatus::missing);
  EXPECT_EQ(service.remove(key), SecretStatus::missing);
  EXPECT_EQ(service.add(key, "first"), SecretStatus::found);
  EXPECT_EQ(service.add(SecretKey("Tarnwick", "other"), "elsewhere"), SecretStatus::found);
  EXPECT_EQ(find().bytes, "first");

  service.remove(key);
  EXPECT_EQ(find().status, SecretStatus::missing);
  const std::string odd("sécond\0\xff", 9);
  EXPECT_EQ(service.add(key, odd), SecretStatus::found);
  const SecretAnswer answer = find();
  EXPECT_EQ(answer.status, SecretStatus::found);
  EXPECT_EQ(answer.bytes, odd);
  EXPECT_EQ(service.find(SecretKey("Tarnwick", "other")).bytes, "elsewhere");
}

TEST_F(Keyring, ALockedStoreIsNeverTakenForAnEmptyOne) {
  ASSERT_EQ(service.add(key, "kept"), SecretStatus::found);
  bus.lockKeyring();
  EXPECT_EQ(find().status, SecretStatus::locked);
  EXPECT_LT(took, 2s);
  EXPECT_EQ(service.find(SecretKey("Tarnwick", "never stored")).status, SecretStatus::locked);
  EXPECT_EQ(service.remove(key), SecretStatus::locked);
  EXPECT_EQ(service.add(key, "other"), SecretStatus::locked);

  bus.stopKeyring();
  ASSERT_TRUE(bus.startKeyring("pass"));
  EXPECT_EQ(find().bytes, "kept");
}

TEST_F(Keyring, AStoreThatHangsIsUnavailableWhenTheTimeIsUp) {
  ASSERT_EQ(service.add(key, "kept"), SecretStatus::found);
  bus.keyring().send(SIGSTOP);
  EXPECT_EQ(findBy(hasty).status, SecretStatus::unavailable);
  EXPECT_GE(took, 290ms);
  EXPECT_LT(took, 2s);
  EXPECT_EQ(hasty.add(key, "x"), SecretStatus::unavailable);
  EXPECT_EQ(hasty.remove(key), SecretStatus::unavailable);

  bus.keyring().send(SIGCONT);
  EXPECT_EQ(find().bytes, "kept");
}

TEST_F(Keyring, AStoreOrABusThatEndsHarmsNobody) {
  bus.stopKeyring();
  EXPECT_EQ(find().status, SecretStatus::unavailable);
  ASSERT_TRUE(bus.startKeyring("pass"));
  EXPECT_EQ(find().status, SecretStatus::missing) << "a store that comes later is used";
  bus.end();
  EXPECT_EQ(find().status, SecretStatus::unavailable);
}

TEST_F(SecretStore, AStoreWithoutAKeyringIsNotAskedToMakeOne) {
  if (!bus.isUp() || !bus.startKeyring(std::nullopt)) {
    GTEST_SKIP() << "no session bus or no gnome-keyring here";
  }
  EXPECT_EQ(find().status, SecretStatus::missing);
  EXPECT_EQ(service.add(key, "x"), SecretStatus::unavailable);
}

TEST_F(SecretStore, NoStoreOnTheBusIsKnownAtOnce) {
  if (!bus.isUp()) GTEST_SKIP() << "no session bus here";
  EXPECT_EQ(find().status, SecretStatus::unavailable);
  EXPECT_LT(took, 1s);
}

TEST_F(SecretStore, NoBusIsKnownAtOnce) {
  const TemporaryFolder folder;
  ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + (folder / "none")).c_str(), 1);
  EXPECT_EQ(find().status, SecretStatus::unavailable);
  ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
  ::setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  // With a display the library would start a bus of its own.
  ::setenv("DISPLAY", ":99", 1);
  EXPECT_EQ(find().status, SecretStatus::unavailable);
  EXPECT_LT(took, 1s);
}

TEST_F(SecretStore, ABusThatNeverAnswersIsUnavailableWhenTheTimeIsUp) {
  const TemporaryFolder folder;
  const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  (folder / "bus").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(::listen(listener, 4), 0);
  ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + (folder / "bus")).c_str(), 1);
  EXPECT_EQ(findBy(hasty).status, SecretStatus::unavailable);
  EXPECT_LT(took, 2s);
  ::close(listener);
}

}  // namespace
}  // namespace tarnwick
