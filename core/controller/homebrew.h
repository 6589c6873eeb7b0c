#pragma once

namespace tarnwick {

/// Host of Homebrew's home page, which is opened when Homebrew is missing. We never install it.
inline constexpr const char* homebrewHost = "brew.sh";

}  // namespace tarnwick
