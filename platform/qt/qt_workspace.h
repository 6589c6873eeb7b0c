#pragma once

#include "core/controller/workspace.h"

namespace tarnwick {

/// The user's desktop as Qt knows it. Programs are started and not waited for.
class QtWorkspace final : public Workspace {
 public:
  void openUrl(const std::string& url) override;
  void revealFolder(const std::string& path) override;
  [[nodiscard]] std::string timeZone() const override;
};

}  // namespace tarnwick
