#pragma once

#include <string>
#include <sys/types.h>
#include <system_error>
#include <vector>

#include "core/process/environment.h"

namespace tarnwick {

/// What to start: the full path of the executable file, the arguments after the program's name, and
/// the complete environment.
struct ToolCommand {
  std::string exe;
  std::vector<std::string> args;
  Environment environment;
};

/// Starts a child that owns nothing of this process but the two descriptors, as its standard output
/// and standard error (they may be the same one and must be above 2). Its standard input is the
/// null device, no signal is blocked or ignored, every other descriptor is closed.
///
/// Gives its pid, or the reason why nothing was started. Blocks until the child has its new image;
/// a file that somebody still writes is tried again for a tenth of a second. Any thread.
[[nodiscard]] pid_t spawnTool(const ToolCommand& command, int output, int error,
                              std::error_code& reason);

}  // namespace tarnwick
