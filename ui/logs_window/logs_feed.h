#pragma once

#include <functional>
#include <string>

#include "core/async/main_thread.h"
#include "core/async/task_scope.h"
#include "core/engine/docker.h"

namespace tarnwick {

/// What one showing of the logs window shows: the container's last lines, loaded when it is made
/// and again every two seconds while followed. Ends with its destruction. Main thread only.
class LogsFeed {
 public:
  static constexpr int tail = 300;
  static constexpr std::chrono::seconds period{2};
  static constexpr const char* initialText = "Loading…";

  /// Calls `changed` after each load. `docker` and `mainThread` outlive the feed.
  LogsFeed(Docker& docker, MainThread& mainThread, std::function<void()> changed);

  /// The lines, or a sentence about why there are none. UTF-8.
  [[nodiscard]] const std::string& text() const { return text_; }

  [[nodiscard]] bool follows() const { return follow_; }
  /// Takes effect within one period.
  void setFollow(bool on) { follow_ = on; }

  /// Loads once more; nothing while a load is under way.
  void refresh();

 private:
  Task<void> load();
  Task<void> loop();

  Docker& docker_;
  MainThread& mainThread_;
  std::function<void()> changed_;
  std::string text_ = initialText;
  bool follow_ = false;
  bool loading_ = false;
  // Last, so that suspended loads go before anything they use.
  TaskScope tasks_;
};

}  // namespace tarnwick
