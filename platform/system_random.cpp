#include "platform/system_random.h"

#include <cerrno>
#include <sys/random.h>

namespace tarnwick {

std::optional<std::vector<std::uint8_t>> SystemRandom::bytes(std::size_t count) {
  std::vector<std::uint8_t> result(count);
  std::size_t filled = 0;
  while (filled < count) {
    const ssize_t got = ::getrandom(result.data() + filled, count - filled, 0);
    if (got < 0) {
      if (errno == EINTR) continue;
      return std::nullopt;
    }
    filled += static_cast<std::size_t>(got);
  }
  return result;
}

}  // namespace tarnwick
