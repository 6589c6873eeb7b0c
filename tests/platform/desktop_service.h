#pragma once

#include <chrono>
#include <gmock/gmock.h>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tests/platform/private_bus.h"
#include "tests/platform/small_files.h"
#include "tests/support/temporary_folder.h"

namespace tarnwick {

/// A service of the desktop in a process of its own, on the bus of this process; see
/// desktop_service.py.
class DesktopService {
 public:
  /// `isUp` is false where it cannot be had.
  explicit DesktopService(const std::string& kind, const std::string& option = "") {
    std::vector<std::string> words = {"/usr/bin/python3", TARNWICK_DESKTOP_SERVICE,
                                      folder_ / "record", kind};
    if (!option.empty()) words.push_back(option);
    process_.emplace(words, "", folder_.path());
    up_ = waitForRecord("ready");
  }

  [[nodiscard]] bool isUp() const { return up_; }
  /// What it was asked and what it noticed, one JSON object a line.
  [[nodiscard]] std::string record() const { return readText(folder_ / "record"); }
  [[nodiscard]] bool waitForRecord(const std::string& part) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (record().find(part) == std::string::npos) {
      if (std::chrono::steady_clock::now() > end) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
  }
  void die() { process_.reset(); }
  [[nodiscard]] const Companion& process() const { return *process_; }

 private:
  TemporaryFolder folder_;
  std::optional<Companion> process_;
  bool up_ = false;
};

}  // namespace tarnwick
