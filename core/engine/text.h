#pragma once

#include <string_view>

namespace tarnwick {

/// `text` without white space and line ends at both ends.
[[nodiscard]] inline std::string_view trimmed(std::string_view text) {
  constexpr std::string_view space = " \t\r\n\v\f";
  const std::size_t begin = text.find_first_not_of(space);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(space) - begin + 1);
}

}  // namespace tarnwick
