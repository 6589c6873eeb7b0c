#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick {

/// Number of leading bytes that are well-formed UTF-8 (no surrogates, no overlong forms, nothing
/// above U+10FFFF); all of `bytes` when there is no fault. Any thread.
[[nodiscard]] std::size_t wellFormedUtf8Prefix(std::string_view bytes);

/// Appends `bytes` to `text` as well-formed UTF-8: each ill-formed sequence becomes one U+FFFD. A
/// sequence ends where the next byte could not continue it, so that a truncated character is
/// replaced once and what follows is kept. Any thread.
void appendUtf8Replacing(std::string& text, std::string_view bytes);

/// `bytes` as well-formed UTF-8, as by appendUtf8Replacing. Moves them through when they are
/// well-formed already. Any thread.
[[nodiscard]] std::string decodeUtf8(std::string bytes);

}  // namespace tarnwick
