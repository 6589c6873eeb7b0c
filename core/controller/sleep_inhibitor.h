#pragma once

#include <memory>
#include <string>

namespace tarnwick {

/// The desktop's promise not to let the computer sleep.
class SleepInhibitor {
 public:
  /// The promise holds until the last copy is gone or the process ends, in whatever way. Letting go
  /// does not block. Any thread.
  using Hold = std::shared_ptr<void>;

  SleepInhibitor() = default;
  SleepInhibitor(const SleepInhibitor&) = delete;
  SleepInhibitor& operator=(const SleepInhibitor&) = delete;
  virtual ~SleepInhibitor() = default;

  /// `reason` is a sentence that the desktop may show to the user. Null when nobody promises
  /// anything. Blocks, for a few seconds at most; made on worker threads.
  virtual Hold hold(const std::string& reason) = 0;
};

}  // namespace tarnwick
