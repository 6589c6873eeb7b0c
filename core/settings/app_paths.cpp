#include "core/settings/app_paths.h"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <utility>

namespace tarnwick {

namespace {

void createFolder(const std::filesystem::path& path) {
  constexpr mode_t forTheUserAlone = 0700;
  if (::mkdir(path.c_str(), forTheUserAlone) == 0 || errno != ENOENT) return;
  if (!path.has_parent_path() || path.parent_path() == path) return;
  createFolder(path.parent_path());
  ::mkdir(path.c_str(), forTheUserAlone);
}

}  // namespace

AppPaths::AppPaths(std::string dataFolder, std::string homeFolder)
    : folder_(std::move(dataFolder)), homeFolder_(std::move(homeFolder)) {
  if (folder_.empty()) folder_ = homeFolder_ + "/Library/Application Support";
  folder_ += "/Tarnwick";
}

std::string AppPaths::supportDir() const {
  createFolder(folder_);
  return folder_;
}

}  // namespace tarnwick
