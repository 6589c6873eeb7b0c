#pragma once

#include <optional>
#include <string>

namespace tarnwick {

/// Tells where a command-line tool is installed.
class ToolFinder {
 public:
  ToolFinder() = default;
  ToolFinder(const ToolFinder&) = delete;
  ToolFinder& operator=(const ToolFinder&) = delete;
  virtual ~ToolFinder() = default;

  /// The full path of the executable file `name`, or none. Looks afresh at each call. Any thread.
  [[nodiscard]] virtual std::optional<std::string> find(const std::string& name) const = 0;
};

}  // namespace tarnwick
