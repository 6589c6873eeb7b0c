#pragma once

#include <string>
#include <sys/types.h>
#include <system_error>
#include <vector>

#include "core/process/environment.h"

namespace tarnwick {

/// Starts the executable file `exe` with the arguments `args` after its own name and exactly the
/// given environment, as a child that owns nothing of this process but the two descriptors, as its
/// standard output and standard error (they may be the same one and must be above 2). Its standard
/// input is the null device, no signal is blocked or ignored, every other descriptor is closed.
///
/// Gives its pid, or the reason why nothing was started. Blocks until the child has its new image;
/// a file that somebody still writes is tried again for a tenth of a second. Any thread.
[[nodiscard]] pid_t spawnTool(const std::string& exe, const std::vector<std::string>& args,
                              const Environment& environment, int output, int error,
                              std::error_code& reason);

}  // namespace tarnwick
