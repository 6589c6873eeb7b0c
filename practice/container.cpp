#include "practice/container.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <filesystem>
#include <fmt/format.h>
#include <netinet/in.h>
#include <sys/random.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include "practice/base64.h"
#include "practice/console.h"
#include "practice/refusal.h"
#include "practice/server_process.h"

namespace tarnwick::practice {
namespace {

std::string newId() {
  std::array<unsigned char, 32> bytes{};
  if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    throw Refusal(125, "Practice engine: there are no random numbers.");
  }
  std::string id;
  for (unsigned char byte : bytes) id += fmt::format("{:02x}", byte);
  return id;
}

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

bool portIsFree(int port) {
  const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int on = 1;
  ::setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  const sockaddr_in address = loopback(port);
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  const bool free = ::bind(descriptor, generic, sizeof address) == 0;
  ::close(descriptor);
  return free;
}

void requirePorts(const ContainerHost& host, const ContainerRequest& request) {
  for (const int port : {request.httpPort, request.httpsPort}) {
    if (port < 1 || port > 65535) {
      throw Refusal(host.refusalStatus, fmt::format("invalid hostPort: {}", port));
    }
    if (host.faults.has(Fault::PortInUse) || !portIsFree(port)) {
      throw Refusal(
          host.refusalStatus,
          fmt::format("Error response from daemon: driver failed programming external "
                      "connectivity on endpoint {}: Bind for 127.0.0.1:{} failed: port is "
                      "already allocated",
                      request.name, port));
    }
  }
}

/// The status that the desktop gives to these credentials; 0 when it gives none in a moment.
int statusFor(int port, const SignIn& signIn) {
  const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const timeval limit{0, 400'000};
  ::setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
  const sockaddr_in address = loopback(port);
  std::array<char, 13> head{};
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  if (::connect(descriptor, generic, sizeof address) == 0) {
    const std::string request =
        fmt::format("GET /status HTTP/1.0\r\nAuthorization: Basic {}\r\n\r\n",
                    base64(signIn.user + ":" + signIn.password.value_or("")));
    if (::send(descriptor, request.data(), request.size(), MSG_NOSIGNAL) > 0) {
      ::recv(descriptor, head.data(), head.size() - 1, MSG_WAITALL);
    }
  }
  ::close(descriptor);
  return std::atoi(head.data() + std::min<std::size_t>(9, std::string_view(head.data()).size()));
}

void startAnew(const ContainerHost& host, Container& container) {
  requirePorts(host, container.request);
  container.locked = false;
  startServer(host.folder, container, SignIn::fromEnvironment(container.request), host.faults);
  container.wanted = true;
}

}  // namespace

void ContainerHost::create(State& state, const ContainerRequest& request) const {
  Container container;
  container.id = newId();
  container.request = request;
  std::error_code ignored;
  std::filesystem::remove(folder.containerLog(), ignored);
  startAnew(*this, container);
  state.container = container;
}

void ContainerHost::start(State& state) const {
  startAnew(*this, state.container.value());
}

bool ContainerHost::runsAsAsked(const State& state, const ContainerRequest& request) const {
  if (!isRunning(state) || state.container->locked) return false;
  if (state.container->request != request) return false;
  const SignIn signIn = SignIn::fromEnvironment(request);
  // A desktop that does not answer yet was started a moment ago, with the same settings.
  return !signIn.password || statusFor(request.httpPort, signIn) != 401;
}

bool isRunning(const State& state) {
  return state.engineUp && state.container && state.container->wanted &&
         serverAlive(*state.container);
}

void stopContainer(State& state) {
  endServer(state.container.value());
  state.container->wanted = false;
}

void removeContainer(State& state) {
  if (state.container) endServer(*state.container);
  state.container.reset();
}

void suspendContainer(State& state) {
  if (state.container) endServer(*state.container);
}

void resumeContainer(const StateFolder& folder, const Faults& faults, State& state) {
  if (!state.container || !state.container->wanted) return;
  Container& container = *state.container;
  const auto& names = container.request.environment;
  container.locked = std::find(names.begin(), names.end(), "PASSWORD") != names.end();
  endServer(container);
  startServer(folder, container, SignIn{"abc", std::nullopt}, faults);
}

}  // namespace tarnwick::practice
