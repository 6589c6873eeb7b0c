#include "platform/session_bus.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <fmt/format.h>
#include <optional>
#include <poll.h>
#include <sstream>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tarnwick {
namespace {

class Socket {
 public:
  Socket() : handle_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;
  ~Socket() {
    if (handle_ >= 0) ::close(handle_);
  }
  [[nodiscard]] int handle() const { return handle_; }

 private:
  int handle_;
};

/// Values of an address may have any byte written as % and two hexadecimal digits.
std::string unescaped(const std::string& value) {
  std::string plain;
  for (std::size_t at = 0; at < value.size(); ++at) {
    unsigned char byte = 0;
    const char* digits = value.data() + at + 1;
    if (value[at] == '%' && at + 2 < value.size() &&
        std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
      plain += static_cast<char>(byte);
      at += 2;
    } else {
      plain += value[at];
    }
  }
  return plain;
}

/// The name of the socket that "unix:path=…" or "unix:abstract=…" means.
std::optional<std::string> socketName(const std::string& address) {
  constexpr const char* transport = "unix:";
  if (!address.starts_with(transport)) return std::nullopt;
  std::istringstream pairs(address.substr(std::strlen(transport)));
  for (std::string pair; std::getline(pairs, pair, ',');) {
    if (pair.starts_with("path=")) return unescaped(pair.substr(5));
    if (pair.starts_with("abstract=")) return '\0' + unescaped(pair.substr(9));
  }
  return std::nullopt;
}

enum class Connection { refused, accepted, stuck };

Connection connectTo(const Socket& socket, const std::string& name) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (name.empty() || name.size() >= sizeof address.sun_path) return Connection::refused;
  std::ranges::copy(name, address.sun_path);
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
  if (::connect(socket.handle(), reinterpret_cast<const sockaddr*>(&address), length) == 0) {
    return Connection::accepted;
  }
  // Too many others wait there already.
  return errno == EAGAIN ? Connection::stuck : Connection::refused;
}

/// Introduces the user as a client of a bus does, and waits for the first word.
bool isGreeted(const Socket& socket, std::chrono::milliseconds limit) {
  std::string hexUser;
  for (const char digit : fmt::to_string(::getuid())) hexUser += fmt::format("{:02x}", digit);
  const std::string words = std::string(1, '\0') + "AUTH EXTERNAL " + hexUser + "\r\n";
  // One that hangs up has not kept anybody waiting.
  if (::send(socket.handle(), words.data(), words.size(), MSG_NOSIGNAL) < 0) return true;

  const auto end = std::chrono::steady_clock::now() + limit;
  while (true) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    pollfd waiting = {socket.handle(), POLLIN, 0};
    const int ready = ::poll(&waiting, 1, static_cast<int>(std::max<long>(left.count(), 0)));
    if (ready >= 0 || errno != EINTR) return ready != 0;
  }
}

}  // namespace

std::string sessionBusAddress() {
  if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS")) return address;
  const char* runtimeFolder = std::getenv("XDG_RUNTIME_DIR");
  if (runtimeFolder == nullptr || *runtimeFolder != '/') return "";
  const std::string path = fmt::format("{}/bus", runtimeFolder);
  return ::access(path.c_str(), F_OK) == 0 ? "unix:path=" + path : "";
}

bool busIsSilent(const std::string& address, std::chrono::milliseconds limit) {
  std::istringstream choices(address);
  // A client takes the first that accepts.
  for (std::string choice; std::getline(choices, choice, ';');) {
    const std::optional<std::string> name = socketName(choice);
    if (!name) return false;
    const Socket socket;
    switch (connectTo(socket, *name)) {
      case Connection::refused:
        break;
      case Connection::stuck:
        return true;
      case Connection::accepted:
        return !isGreeted(socket, limit);
    }
  }
  return false;
}

void forgoSilentSessionBus(std::chrono::milliseconds limit) {
  // Of a transport that no library knows, so that each gives up at once and none starts a bus.
  if (busIsSilent(sessionBusAddress(), limit)) {
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
  }
}

}  // namespace tarnwick
