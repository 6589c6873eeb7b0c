#include "core/engine/port_check.h"

#include <arpa/inet.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/support/fake_command_runner.h"
#include "tests/support/run_task.h"

namespace tarnwick {
namespace {

using testing::ElementsAre;
using Runner = FakeCommandRunner;

enum class Family { ipv4, ipv6, ipv6Only };

/// A socket that listens on a port of all addresses, or of `address`, until it is destroyed.
class Listener {
 public:
  explicit Listener(Family family, std::int64_t port = 0, const char* address = nullptr)
      : socket_(
            ::socket(family == Family::ipv4 ? AF_INET : AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const int on = 1;
    ::setsockopt(socket_, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const int only = family == Family::ipv6Only ? 1 : 0;
    sockaddr_in six4 = {};
    sockaddr_in6 six = {};
    socklen_t length = sizeof six4;
    auto* any = reinterpret_cast<sockaddr*>(&six4);
    six4.sin_family = AF_INET;
    six4.sin_port = htons(static_cast<std::uint16_t>(port));
    if (address != nullptr) ::inet_pton(AF_INET, address, &six4.sin_addr);
    if (family != Family::ipv4) {
      ::setsockopt(socket_, IPPROTO_IPV6, IPV6_V6ONLY, &only, sizeof only);
      six.sin6_family = AF_INET6;
      six.sin6_port = six4.sin_port;
      length = sizeof six;
      any = reinterpret_cast<sockaddr*>(&six);
    }
    listens_ = ::bind(socket_, any, length) == 0 && ::listen(socket_, 1) == 0;
    ::getsockname(socket_, any, &length);
    port_ = ntohs(family == Family::ipv4 ? six4.sin_port : six.sin6_port);
  }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  ~Listener() { ::close(socket_); }

  [[nodiscard]] bool listens() const { return listens_; }
  [[nodiscard]] std::int64_t port() const { return port_; }

 private:
  int socket_;
  bool listens_ = false;
  std::int64_t port_ = 0;
};

TEST(PortIsFree, NumbersThatAreNoPortsAreNotFree) {
  for (const std::int64_t port : {std::int64_t{0}, std::int64_t{-1}, std::int64_t{65536},
                                  std::int64_t{70000}, INT64_MIN, INT64_MAX, 65536 + 3000L}) {
    EXPECT_FALSE(portIsFree(port)) << port;
  }
}

TEST(PortIsFree, AListenerThatTakesLoopbackConnectionsHoldsThePort) {
  std::int64_t port = 0;
  {
    const Listener everywhere(Family::ipv4);
    ASSERT_TRUE(everywhere.listens());
    port = everywhere.port();
    EXPECT_FALSE(portIsFree(port));
  }
  EXPECT_TRUE(portIsFree(port)) << "and it is free as soon as the listener is gone";
  const Listener loopback(Family::ipv4, 0, "127.0.0.1");
  ASSERT_TRUE(loopback.listens());
  EXPECT_FALSE(portIsFree(loopback.port()));
}

TEST(PortIsFree, AnIpv6ListenerHoldsThePortOnlyIfItTakesIpv4Too) {
  const Listener both(Family::ipv6);
  if (!both.listens()) GTEST_SKIP() << "this machine has no IPv6";
  EXPECT_FALSE(portIsFree(both.port()));
  const Listener only(Family::ipv6Only);
  ASSERT_TRUE(only.listens());
  EXPECT_TRUE(portIsFree(only.port()));
}

TEST(WebViewOpensPort, RefusesThePortsThatBrowsersRefuse) {
  for (const std::int64_t port :
       {0, 1, 22, 25, 995, 1719, 2049, 6000, 6665, 6667, 6669, 6697, 10080, 65536, -3000}) {
    EXPECT_FALSE(webViewOpensPort(port)) << port;
  }
  for (const std::int64_t port : {80, 443, 3000, 3001, 3100, 6664, 6670, 8080, 10081, 65535}) {
    EXPECT_TRUE(webViewOpensPort(port)) << port;
  }
}

/// Two adjacent ports that are free now; the tests need them only for moments.
std::int64_t quietBase() {
  for (std::int64_t base = 21000; base < 29000; base += 100) {
    const auto isQuiet = [base](std::int64_t offset) { return portIsFree(base + offset); };
    if (isQuiet(0) && isQuiet(1) && isQuiet(10) && isQuiet(11) && isQuiet(20) && isQuiet(21)) {
      return base;
    }
  }
  return 0;
}

TEST(FreePair, TriesThePairsTenApartAndTakesBothFree) {
  const std::int64_t base = quietBase();
  ASSERT_NE(base, 0);
  EXPECT_EQ(PortCheck::freePair(base), std::pair(base, base + 1));
  const Listener second(Family::ipv4, base + 1);
  ASSERT_TRUE(second.listens());
  EXPECT_EQ(PortCheck::freePair(base), std::pair(base + 10, base + 11));
  const Listener first(Family::ipv4, base + 10);
  ASSERT_TRUE(first.listens());
  EXPECT_EQ(PortCheck::freePair(base), std::pair(base + 20, base + 21));
}

TEST(FreePair, PassesOverPortsThatTheWebViewRefuses) {
  EXPECT_NE(PortCheck::freePair(5060).first, 5060);
  EXPECT_NE(PortCheck::freePair(10079).first, 10079) << "the second port of the pair";
}

TEST(FreePair, EndsAtTheLimitAndSkipsWhatIsBelowAnyPort) {
  EXPECT_EQ(PortCheck::freePair(65000), std::pair(std::int64_t{65000}, std::int64_t{65001}));
  EXPECT_EQ(PortCheck::freePair(70000), std::pair(std::int64_t{70000}, std::int64_t{70001}));
  const Listener last(Family::ipv4, 64999);
  EXPECT_EQ(PortCheck::freePair(64999), std::pair(std::int64_t{64999}, std::int64_t{65000}))
      << "untested when every candidate is taken";
  for (const std::int64_t base : {std::int64_t{0}, std::int64_t{-7}, INT64_MIN + 3}) {
    const auto [first, second] = PortCheck::freePair(base);
    EXPECT_GE(first, 1);
    EXPECT_EQ((first - base % 10) % 10, 0) << base;
    EXPECT_EQ(second, first + 1);
  }
}

class HolderTest : public testing::Test {
 protected:
  std::string holder(PortCheck& check, std::int64_t port) {
    return runToEnd(mainThread_, check.holder(port)).value();
  }

  VirtualMainThread mainThread_;
  Runner runner_{mainThread_};
};

TEST_F(HolderTest, IsTheWholeTableWhateverTheStatus) {
  PortCheck check(runner_);
  const std::string table = "COMMAND PID USER\nnginx   812 me\nnginx   813 me";
  runner_.on({"lsof"}, CommandResult(1, "\n  " + table + " \n\n", "lsof: WARNING", false));
  EXPECT_EQ(holder(check, 3000), table);
  EXPECT_THAT(runner_.calls.at(0).args, ElementsAre("-nP", "-iTCP:3000", "-sTCP:LISTEN"));
  EXPECT_EQ(runner_.calls.at(0).timeout, 5);
  EXPECT_TRUE(runner_.calls.at(0).env.empty());
}

TEST_F(HolderTest, IsASentenceWhenLsofTellsNothing) {
  PortCheck check(runner_);
  for (const auto& result : {Runner::failure("lsof: not permitted"), Runner::success(" \n"),
                             Runner::timeOut(), CommandResult(-1, "", "No such file", false)}) {
    runner_.on({"lsof"}, result);
    EXPECT_EQ(holder(check, 70000), "Could not tell which program uses port 70000.");
  }
}

TEST_F(HolderTest, TheFirstLsofThatIsThereRuns) {
  namespace fs = std::filesystem;
  std::string pattern = (fs::temp_directory_path() / "lsof-XXXXXX").string();
  const fs::path folder = ::mkdtemp(pattern.data());
  const fs::path present = folder / "lsof";
  const std::string missing = (folder / "missing/lsof").string();
  std::ofstream(present) << "#!/bin/true\n";
  fs::permissions(present, fs::perms::owner_all);
  PortCheck second(runner_, {missing, present.string()});
  holder(second, 1);
  PortCheck first(runner_, {present.string(), missing});
  holder(first, 1);
  PortCheck none(runner_, {missing, missing + "2"});
  holder(none, 1);
  EXPECT_EQ(runner_.calls.at(0).exe, present);
  EXPECT_EQ(runner_.calls.at(1).exe, present);
  EXPECT_EQ(runner_.calls.at(2).exe, missing);
  fs::remove_all(folder);
}

}  // namespace
}  // namespace tarnwick
