#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "core/async/task.h"
#include "core/process/command_runner.h"

namespace tarnwick {

/// Whether this program could listen on 127.0.0.1 at `port` now. False outside 1 to 65535.
[[nodiscard]] bool portIsFree(std::int64_t port);

/// Whether the embedded web view opens this port at all; browsers refuse some for safety.
[[nodiscard]] bool webViewOpensPort(std::int64_t port);

/// Finds who holds a port, and ports that are free. Main thread.
class PortCheck {
 public:
  explicit PortCheck(CommandRunner& runner);

  /// lsof's table of the listening processes, or a sentence.
  Task<std::string> holder(std::int64_t port);

  /// Two adjacent free ports (p, p + 1), p = base, base + 10, … below 65000; (base, base + 1) when
  /// there are none. Pairs with a port that the web view refuses are passed over. Blocks for a few
  /// socket calls only.
  [[nodiscard]] static std::pair<std::int64_t, std::int64_t> freePair(std::int64_t base);

 private:
  CommandRunner& runner_;
};

}  // namespace tarnwick
