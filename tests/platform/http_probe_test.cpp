#include <arpa/inet.h>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "platform/curl_http_probe.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

/// Accepts connections on a free loopback port and lets `serve` answer each in turn. `serve` looks
/// at `over` when it takes long.
class TestServer {
 public:
  using Serve = std::function<void(int connection, const std::atomic<bool>& over)>;

  explicit TestServer(Serve serve) : serve_(std::move(serve)) {
    listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(::bind(listener_, generic, size), 0);
    EXPECT_EQ(::listen(listener_, 8), 0);
    EXPECT_EQ(::getsockname(listener_, generic, &size), 0);
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { run(); });
  }
  TestServer(const TestServer&) = delete;
  TestServer& operator=(const TestServer&) = delete;
  ~TestServer() {
    over_ = true;
    thread_.join();
    ::close(listener_);
  }

  [[nodiscard]] std::string url() const {
    return "http://127.0.0.1:" + std::to_string(port_) + "/";
  }
  [[nodiscard]] int connections() const { return connections_; }

 private:
  void run() {
    while (!over_) {
      pollfd waiting{listener_, POLLIN, 0};
      if (::poll(&waiting, 1, 20) <= 0) continue;
      const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
      if (connection < 0) continue;
      ++connections_;
      serve_(connection, over_);
      ::close(connection);
    }
  }

  Serve serve_;
  int listener_ = -1;
  int port_ = 0;
  std::atomic<bool> over_ = false;
  std::atomic<int> connections_ = 0;
  std::thread thread_;
};

bool send(int connection, const std::string& text) {
  return ::send(connection, text.data(), text.size(), MSG_NOSIGNAL) ==
         static_cast<ssize_t>(text.size());
}

std::string readRequest(int connection) {
  std::string request;
  char buffer[4096];
  while (request.find("\r\n\r\n") == std::string::npos) {
    const ssize_t count = ::recv(connection, buffer, sizeof buffer, 0);
    if (count <= 0) break;
    request.append(buffer, static_cast<std::size_t>(count));
  }
  return request;
}

TestServer::Serve answering(const std::string& answer) {
  return [answer](int connection, const std::atomic<bool>&) {
    readRequest(connection);
    send(connection, answer);
  };
}

/// The answer, and the time that it took.
struct Outcome {
  std::optional<int> status;
  std::chrono::milliseconds took;
};

Outcome probe(const std::string& url, std::chrono::milliseconds limit = 5s) {
  CurlHttpProbe prober;
  const auto start = std::chrono::steady_clock::now();
  const std::optional<int> status = prober.status(url, limit);
  const auto took = std::chrono::steady_clock::now() - start;
  return {status, std::chrono::duration_cast<std::chrono::milliseconds>(took)};
}

TEST(HttpProbe, GivesTheStatusWhateverItIs) {
  for (const int code : {200, 204, 401, 404, 500, 503}) {
    const TestServer server(answering("HTTP/1.1 " + std::to_string(code) +
                                      " Word\r\nWWW-Authenticate: Basic realm=\"Login\"\r\n"
                                      "Content-Length: 0\r\nConnection: close\r\n\r\n"));
    EXPECT_EQ(probe(server.url()).status, code);
  }
}

TEST(HttpProbe, FollowsNoRedirect) {
  const TestServer target(answering("HTTP/1.0 200 OK\r\n\r\n"));
  const TestServer server(answering("HTTP/1.1 301 Moved\r\nLocation: " + target.url() +
                                    "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n"));
  EXPECT_EQ(probe(server.url()).status, 301);
  EXPECT_EQ(target.connections(), 0);
}

TEST(HttpProbe, SendsOnePlainGet) {
  std::string request;
  const TestServer server([&request](int connection, const std::atomic<bool>&) {
    request = readRequest(connection);
    send(connection, "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
  });
  EXPECT_EQ(probe(server.url()).status, 200);
  EXPECT_TRUE(request.starts_with("GET / HTTP/1.1\r\n")) << request;
  EXPECT_EQ(request.find("Authorization"), std::string::npos);
  EXPECT_EQ(request.find("Cookie"), std::string::npos);
}

TEST(HttpProbe, NeverGoesThroughAProxy) {
  const TestServer proxy(answering("HTTP/1.1 502 Bad Gateway\r\nContent-Length: 0\r\n\r\n"));
  const TestServer server(answering("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"));
  for (const char* name : {"http_proxy", "all_proxy", "ALL_PROXY"}) {
    ::setenv(name, proxy.url().c_str(), 1);
  }
  EXPECT_EQ(probe(server.url()).status, 200);
  EXPECT_EQ(proxy.connections(), 0);
}

TEST(HttpProbe, NothingListensIsKnownAtOnce) {
  std::string url;
  {
    url = TestServer([](int, const std::atomic<bool>&) {}).url();
  }
  const Outcome outcome = probe(url);
  EXPECT_EQ(outcome.status, std::nullopt);
  EXPECT_LT(outcome.took, 1s);
}

TEST(HttpProbe, ASilentServerCostsTheLimitAndNoMore) {
  const TestServer server([](int, const std::atomic<bool>& over) {
    while (!over) std::this_thread::sleep_for(10ms);
  });
  const Outcome outcome = probe(server.url(), 400ms);
  EXPECT_EQ(outcome.status, std::nullopt);
  EXPECT_GE(outcome.took, 390ms);
  EXPECT_LT(outcome.took, 2s);
}

TEST(HttpProbe, AServerOfOneByteNowAndThenIsNoAnswer) {
  const std::string answer = "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n";
  const TestServer head([&answer](int connection, const std::atomic<bool>& over) {
    for (std::size_t i = 0; !over && i < answer.size(); ++i) {
      send(connection, answer.substr(i, 1));
      std::this_thread::sleep_for(50ms);
    }
  });
  const TestServer body([&answer](int connection, const std::atomic<bool>& over) {
    send(connection, answer);
    while (!over && send(connection, "x")) std::this_thread::sleep_for(50ms);
  });
  for (const TestServer* server : {&head, &body}) {
    const Outcome outcome = probe(server->url(), 400ms);
    EXPECT_EQ(outcome.status, std::nullopt);
    EXPECT_LT(outcome.took, 2s);
  }
}

TEST(HttpProbe, AnEndlessBodyAnswersAndAnEndlessHeadDoesNot) {
  const auto flood = [](const std::string& start, const std::string& line) {
    return [start, line](int connection, const std::atomic<bool>& over) {
      readRequest(connection);
      send(connection, start);
      while (!over && send(connection, line)) {
      }
    };
  };
  const std::string line = "X-Line: " + std::string(1000, 'x') + "\r\n";
  const TestServer body(flood("HTTP/1.1 200 OK\r\n\r\n", line));
  const TestServer head(flood("HTTP/1.1 200 OK\r\n", line));
  EXPECT_EQ(probe(body.url(), 20s).status, 200);
  const Outcome outcome = probe(head.url(), 20s);
  EXPECT_EQ(outcome.status, std::nullopt);
  EXPECT_LT(outcome.took, 10s);
}

TEST(HttpProbe, OtherProtocolsAndNonsenseAreNoAnswer) {
  const TestServer gibberish(answering("SSH-2.0-OpenSSH_9.2\r\n"));
  EXPECT_EQ(probe(gibberish.url()).status, std::nullopt);
  for (const char* url :
       {"file:///etc/hostname", "", "http://127.0.0.1:70000/", "ftp://127.0.0.1"}) {
    EXPECT_EQ(probe(url).status, std::nullopt) << url;
  }
}

}  // namespace
}  // namespace tarnwick
