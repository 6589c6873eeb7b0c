#pragma once

#include <set>

#include "core/process/tool_finder.h"

namespace tarnwick {

/// Finds the tools in `installed`, each as "/tools/NAME".
class FakeToolFinder final : public ToolFinder {
 public:
  std::set<std::string> installed = {"docker", "colima", "brew"};

  [[nodiscard]] std::optional<std::string> find(const std::string& name) const override {
    if (!installed.contains(name)) return std::nullopt;
    return "/tools/" + name;
  }
};

}  // namespace tarnwick
