#pragma once

#include <optional>
#include <string>

namespace tarnwick {

/// Creates the folder and its missing parents, for the user alone. Gives the system's reason when
/// the folder is not there afterwards. Any thread.
[[nodiscard]] std::optional<std::string> createPrivateFolder(const std::string& path);

}  // namespace tarnwick
