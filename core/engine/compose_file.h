#pragma once

#include <string>
#include <vector>

#include "core/engine/launch_config.h"

namespace tarnwick {

/// The two equivalent forms of a launch configuration. Pure; both pass the sign-in variables by
/// name only, so that the password stays out of files and argument lists.
namespace ComposeFile {

/// The complete compose file.
[[nodiscard]] std::string yaml(const LaunchConfig& config);

/// The arguments after the docker executable, beginning with "run".
[[nodiscard]] std::vector<std::string> runArguments(const LaunchConfig& config);

}  // namespace ComposeFile
}  // namespace tarnwick
