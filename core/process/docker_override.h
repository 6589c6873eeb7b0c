#pragma once

#include <string>
#include <vector>

#include "core/process/environment.h"
#include "core/process/tool_finder.h"
#include "core/settings/app_paths.h"

namespace tarnwick {

/// When the user's docker configuration names a credential helper that `tools` does not find,
/// writes a configuration of our own without it and gives the variables that lead docker there.
/// Empty in every other case, and when the file cannot be written. Reads and writes files. Any
/// thread.
[[nodiscard]] Environment makeDockerOverride(const ToolFinder& tools,
                                             const std::vector<std::string>& pluginFolders,
                                             const AppPaths& paths);

}  // namespace tarnwick
