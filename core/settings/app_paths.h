#pragma once

#include <string>

namespace tarnwick {

/// Names the application's own folder on disk. Any thread.
class AppPaths {
 public:
  /// `dataFolder` is where the platform keeps data of the user's applications; empty when it names
  /// none. `homeFolder` is the user's home.
  AppPaths(std::string dataFolder, std::string homeFolder);

  /// The support folder, readable by the user alone. Every call creates it with its missing
  /// parents; when that fails the path is returned all the same, and the write that follows tells.
  [[nodiscard]] std::string supportDir() const;

  [[nodiscard]] const std::string& homeFolder() const { return homeFolder_; }

 private:
  std::string folder_;
  std::string homeFolder_;
};

}  // namespace tarnwick
