#pragma once

#include <arpa/inet.h>
#include <cstdint>
#include <cstdlib>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tarnwick {

/// Another program that listens on 127.0.0.1, at a port that the system chose.
class ListeningSocket {
 public:
  ListeningSocket() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(socket_, generic, length) != 0 || ::listen(socket_, 8) != 0 ||
        ::getsockname(socket_, generic, &length) != 0) {
      std::abort();
    }
    port_ = ntohs(address.sin_port);
  }
  ListeningSocket(const ListeningSocket&) = delete;
  ListeningSocket& operator=(const ListeningSocket&) = delete;
  ~ListeningSocket() { ::close(socket_); }

  [[nodiscard]] std::int64_t port() const { return port_; }

  /// Waits for a caller and gives the connection, or -1 after shutDown(). Any thread.
  [[nodiscard]] int accept() const { return ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC); }
  void shutDown() const { ::shutdown(socket_, SHUT_RDWR); }

 private:
  int socket_;
  std::int64_t port_ = 0;
};

}  // namespace tarnwick
