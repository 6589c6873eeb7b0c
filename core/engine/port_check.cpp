#include "core/engine/port_check.h"

#include <algorithm>
#include <arpa/inet.h>
#include <iterator>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "core/engine/text.h"

namespace tarnwick {

namespace {

constexpr std::int64_t highestPort = 65535;
constexpr std::int64_t endOfSearch = 65000;
constexpr std::int64_t searchStep = 10;
constexpr double holderLimit = 5;

/// Ports of well-known services that browsers refuse to open, in ascending order.
constexpr std::int64_t refusedPorts[] = {
    1,    7,    9,    11,   13,   15,   17,   19,   20,   21,   22,   23,   25,   37,
    42,   43,   53,   69,   77,   79,   87,   95,   101,  102,  103,  104,  109,  110,
    111,  113,  115,  117,  119,  123,  135,  137,  139,  143,  161,  179,  389,  427,
    465,  512,  513,  514,  515,  526,  530,  531,  532,  540,  548,  554,  556,  563,
    587,  601,  636,  989,  990,  993,  995,  1719, 1720, 1723, 2049, 3659, 4045, 5060,
    5061, 6000, 6566, 6665, 6666, 6667, 6668, 6669, 6697, 10080};
static_assert(std::ranges::is_sorted(refusedPorts));

bool isOffered(std::int64_t port) {
  return webViewOpensPort(port) && portIsFree(port);
}

}  // namespace

bool portIsFree(std::int64_t port) {
  if (port < 1 || port > highestPort) return false;
  const int probe = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (probe < 0) return true;
  const int on = 1;
  ::setsockopt(probe, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int bound = ::bind(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address);
  ::close(probe);
  return bound == 0;
}

bool webViewOpensPort(std::int64_t port) {
  return port >= 1 && port <= highestPort && !std::ranges::binary_search(refusedPorts, port);
}

PortCheck::PortCheck(CommandRunner& runner, std::vector<std::string> lsofPaths)
    : runner_(runner), lsofPaths_(std::move(lsofPaths)) {}

const std::string& PortCheck::lsof() const {
  const auto present = std::ranges::find_if(
      lsofPaths_, [](const std::string& path) { return ::access(path.c_str(), X_OK) == 0; });
  return present != lsofPaths_.end() ? *present : lsofPaths_.front();
}

Task<std::string> PortCheck::holder(std::int64_t port) {
  const std::string number = std::to_string(port);
  std::vector<std::string> args = {"-nP"};
  args.push_back("-iTCP:" + number);
  args.emplace_back("-sTCP:LISTEN");
  std::string exe = lsof();
  Environment env;
  const CommandResult result =
      co_await runner_.run(std::move(exe), std::move(args), holderLimit, std::move(env));
  const std::string_view table = trimmed(result.out);
  if (!table.empty()) co_return std::string(table);
  co_return "Could not tell which program uses port " + number + ".";
}

std::pair<std::int64_t, std::int64_t> PortCheck::freePair(std::int64_t base) {
  // From a base below 1 the search begins at the first candidate that is a port at all.
  std::int64_t port = base < 1 ? base % searchStep + searchStep : base;
  for (; port < endOfSearch; port += searchStep) {
    if (isOffered(port) && isOffered(port + 1)) return {port, port + 1};
  }
  return {base, base + 1};
}

}  // namespace tarnwick
