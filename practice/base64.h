#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick::practice {

/// Standard alphabet, with padding: what Basic sign-in sends.
inline std::string base64(std::string_view bytes) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    unsigned group = 0;
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
    for (std::size_t i = 0; i < 3; ++i) {
      const auto byte = i < count ? static_cast<unsigned char>(bytes[at + i]) : 0U;
      group = (group << 8U) | byte;
    }
    for (std::size_t i = 0; i < 4; ++i) {
      text += i <= count ? kDigits[(group >> (18U - 6U * i)) & 63U] : '=';
    }
  }
  return text;
}

}  // namespace tarnwick::practice
