#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tarnwick {

enum class Collect { no, yes };

/// The least that running a tool can cost: posix_spawn, two pipes, poll, waitpid, and nothing else.
/// `command` begins with the full path. Gives the number of bytes that the tool wrote.
std::size_t bareRun(const std::vector<std::string>& command, Collect collect);

}  // namespace tarnwick
