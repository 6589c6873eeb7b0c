#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

/// Turns a tool's raw output into one sentence that a user can act on: that of the first known
/// cause found in the output, letter case ignored, or `fallback` with a hint at the details.
[[nodiscard]] std::string friendly(std::string_view output, std::string_view fallback);

/// `text` with the letters A to Z in lower case, for looking up patterns in tool output.
[[nodiscard]] std::string lowerCased(std::string_view text);

}  // namespace tarnwick
