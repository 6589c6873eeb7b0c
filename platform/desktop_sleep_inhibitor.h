#pragma once

#include <chrono>

#include "core/controller/sleep_inhibitor.h"

namespace tarnwick {

/// Asks the login manager, and where that refuses, the desktop's session or power manager. What
/// they promise hangs on an open descriptor or on a connection of the hold's own, which the kernel
/// closes when the process dies.
class DesktopSleepInhibitor final : public SleepInhibitor {
 public:
  /// `limit` is the time for each of those three.
  explicit DesktopSleepInhibitor(std::chrono::milliseconds limit = std::chrono::seconds(2))
      : limit_(limit) {}

  Hold hold(const std::string& reason) override;

 private:
  std::chrono::milliseconds limit_;
};

}  // namespace tarnwick
