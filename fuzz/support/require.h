#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace tarnwick::fuzz {

/// Ends the run as a finding, with the sentence that does not hold.
inline void require(bool holds, std::string_view sentence) {
  if (holds) return;
  std::fprintf(stderr, "Does not hold: %.*s\n", static_cast<int>(sentence.size()), sentence.data());
  std::abort();
}

}  // namespace tarnwick::fuzz
