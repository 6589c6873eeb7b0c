#include "app/wish_client.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "core/process/file_descriptor.h"

namespace tarnwick {
namespace {

using Clock = std::chrono::steady_clock;

FileDescriptor connectTo(const std::string& path) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return {};
  std::memcpy(address.sun_path, path.c_str(), path.size());
  FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  // Does not wait: where too many are waiting already it fails, like where nobody listens.
  if (!socket ||
      ::connect(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
    return {};
  }
  return socket;
}

/// Sends a text that fits the socket's buffer.
bool sendWhole(int socket, const std::string& text) {
  return ::send(socket, text.data(), text.size(), MSG_NOSIGNAL) ==
         static_cast<ssize_t>(text.size());
}

enum class Read { line, ended, timeout };

/// Reads line by line.
class LineReader {
 public:
  explicit LineReader(int socket) : socket_(socket) {}

  Read next(std::string& line, Clock::time_point deadline) {
    while (true) {
      const std::size_t end = buffer_.find('\n');
      if (end != std::string::npos) {
        line = buffer_.substr(0, end + 1);
        buffer_.erase(0, end + 1);
        return Read::line;
      }
      if (buffer_.size() > longestAnswer) return Read::ended;
      if (!waitForInput(deadline)) return Read::timeout;
      if (!receive()) return Read::ended;
    }
  }

 private:
  bool waitForInput(Clock::time_point deadline) const {
    while (true) {
      const auto left =
          std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
      pollfd input = {socket_, POLLIN, 0};
      const int ready = ::poll(&input, 1, static_cast<int>(std::max<long long>(left, 0)));
      if (ready > 0) return true;
      if (ready == 0 || errno != EINTR) return false;
    }
  }

  bool receive() {
    char bytes[1024];
    const ssize_t count = ::recv(socket_, bytes, sizeof bytes, 0);
    if (count <= 0) return count < 0 && (errno == EINTR || errno == EAGAIN);
    buffer_.append(bytes, static_cast<std::size_t>(count));
    return true;
  }

  int socket_;
  std::string buffer_;
};

Answer tooLong(Wish wish) {
  const bool stop = wish == Wish::stop;
  return {ExitCode::failed, stop ? "The desktop is still being stopped; this takes very long."
                                 : "Tarnwick takes very long to answer."};
}

}  // namespace

Reached ask(const std::string& path, const Request& request, AnswerLimits limits) {
  const FileDescriptor socket = connectTo(path);
  if (!socket || !sendWhole(socket.get(), requestLine(request))) return {};
  LineReader reader(socket.get());
  std::string line;
  bool atWork = false;
  auto deadline = Clock::now() + limits.sign;
  while (true) {
    switch (reader.next(line, deadline)) {
      case Read::ended:
        return {};
      case Read::timeout:
        if (!atWork) return {Contact::silent, {}};
        return {Contact::answered, tooLong(request.wish)};
      case Read::line:
        break;
    }
    if (line != workingLine) break;
    if (!atWork) deadline = Clock::now() + limits.work;
    atWork = true;
  }
  if (const auto answer = parseAnswer(line)) return {Contact::answered, *answer};
  return {Contact::answered,
          {ExitCode::failed, "The running Tarnwick gives an answer that makes no sense."}};
}

}  // namespace tarnwick
