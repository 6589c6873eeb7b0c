#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tarnwick {

/// Names and what is known under them, in the order in which they are shown.
using Facts = std::vector<std::pair<std::string, std::string>>;

/// What system this is and how the user's session runs on it. Reads one small file. Any thread.
[[nodiscard]] Facts systemFacts();

}  // namespace tarnwick
