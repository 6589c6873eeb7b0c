#pragma once

#include <string>
#include <vector>

#include "core/controller/workspace.h"

namespace tarnwick {

/// Remembers what the desktop shell was asked to do.
class RecordingWorkspace final : public Workspace {
 public:
  std::vector<std::string> openedUrls;
  std::vector<std::string> revealedFolders;

  void openUrl(const std::string& url) override { openedUrls.push_back(url); }
  void revealFolder(const std::string& path) override { revealedFolders.push_back(path); }
  [[nodiscard]] std::string timeZone() const override { return "Europe/Berlin"; }
};

}  // namespace tarnwick
