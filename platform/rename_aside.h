#pragma once

#include <optional>
#include <string>

namespace tarnwick {

class MovedAside {
 public:
  std::optional<std::string> newPath;  ///< where the file is now; none when it stayed
  std::string reason;                  ///< the system's reason when it stayed
};

/// Renames a file to the first free name of path.bad, path.bad1, path.bad2, ...: never over an
/// existing one. Any thread.
[[nodiscard]] MovedAside renameAside(const std::string& path);

}  // namespace tarnwick
