#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

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
  /// The first of `lsofPaths` (at least one) that is there is run; the first one when none is,
  /// whose absence is then told by the result.
  explicit PortCheck(CommandRunner& runner,
                     std::vector<std::string> lsofPaths = {"/usr/sbin/lsof", "/usr/bin/lsof"});

  /// lsof's table of the listening processes, or a sentence.
  Task<std::string> holder(std::int64_t port);

  /// Two adjacent free ports (p, p + 1), p = base, base + 10, … below 65000; (base, base + 1) when
  /// there are none. Pairs with a port that the web view refuses are passed over. Blocks for a few
  /// socket calls only.
  [[nodiscard]] static std::pair<std::int64_t, std::int64_t> freePair(std::int64_t base);

 private:
  [[nodiscard]] const std::string& lsof() const;

  CommandRunner& runner_;
  std::vector<std::string> lsofPaths_;
};

}  // namespace tarnwick
