#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace tarnwick {

/// One finished run of a tool.
class CommandResult {
 public:
  CommandResult(std::int32_t endStatus, std::string output, std::string errors, bool hitLimit)
      : status(endStatus), out(std::move(output)), err(std::move(errors)), timedOut(hitLimit) {}

  /// Exit status; 128 + n when signal n ended the tool; -1 when it could not be started or was
  /// still running when the runner gave up on it.
  std::int32_t status;
  std::string out;
  /// Standard error, or the system's description of why the tool could not be started.
  std::string err;
  /// The tool had not ended within the time limit.
  bool timedOut;

  [[nodiscard]] bool succeeded() const { return status == 0 && !timedOut; }

  /// The non-empty ones of `out` and `err`, joined by one line feed, untrimmed.
  [[nodiscard]] std::string combined() const {
    if (out.empty()) return err;
    return err.empty() ? out : out + "\n" + err;
  }
};

}  // namespace tarnwick
