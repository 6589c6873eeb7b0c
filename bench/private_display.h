#pragma once

#include <string>
#include <sys/types.h>

namespace tarnwick {

/// A virtual display of the benchmark's own, without a window manager: the first large picture on
/// it was drawn by the program that was started on it.
class PrivateDisplay {
 public:
  PrivateDisplay();
  PrivateDisplay(const PrivateDisplay&) = delete;
  PrivateDisplay& operator=(const PrivateDisplay&) = delete;
  ~PrivateDisplay();

  /// Value for the environment variable DISPLAY.
  [[nodiscard]] const std::string& name() const { return name_; }

 private:
  pid_t server_ = -1;
  std::string name_;
};

}  // namespace tarnwick
