#include "core/controller/log_text.h"

#include <algorithm>
#include <utf8proc.h>

namespace tarnwick {
namespace {

bool isPlainAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80U && c != '\r'; });
}

/// The length in bytes of the first user-perceived character of `text`, which is not empty.
std::size_t firstCharacter(std::string_view text) {
  utf8proc_int32_t state = 0;
  utf8proc_int32_t previous = 0;
  std::size_t position = 0;
  while (position < text.size()) {
    utf8proc_int32_t codePoint = 0;
    const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data() + position);
    const auto left = static_cast<utf8proc_ssize_t>(text.size() - position);
    const auto length = std::max<utf8proc_ssize_t>(utf8proc_iterate(bytes, left, &codePoint), 1);
    if (position > 0 && utf8proc_grapheme_break_stateful(previous, codePoint, &state)) break;
    previous = codePoint;
    position += static_cast<std::size_t>(length);
  }
  return position;
}

std::size_t countCharacters(std::string_view text) {
  if (isPlainAscii(text)) return text.size();
  std::size_t count = 0;
  for (; !text.empty(); ++count) text.remove_prefix(firstCharacter(text));
  return count;
}

/// The length in bytes of the first `count` user-perceived characters.
std::size_t lengthOfCharacters(std::string_view text, std::size_t count) {
  // Most output is ASCII, where characters are bytes. The look one byte ahead keeps a base
  // character together with a mark that follows it.
  const std::string_view guess = text.substr(0, count + 1);
  if (isPlainAscii(guess)) return std::min(count, text.size());
  std::size_t length = 0;
  for (; count > 0 && length < text.size(); --count) length += firstCharacter(text.substr(length));
  return length;
}

}  // namespace

// A line feed is a character of its own, and a character never spans lines: so lines can be counted
// one by one when they come, and dropped from the front in whole characters later.
void LogText::appendLine(std::string_view line) {
  const std::size_t before = buffer_.size();
  buffer_.append(line).push_back('\n');
  const std::string_view added = std::string_view(buffer_).substr(before);
  appended_ += added.size();
  characters_ += countCharacters(added);
  if (text().size() > maxBytes && characters_ > keptCharacters) {
    dropCharacters(characters_ - keptCharacters);
  }
}

void LogText::dropCharacters(std::size_t count) {
  start_ += lengthOfCharacters(text(), count);
  characters_ -= count;
  if (start_ > maxBytes) {
    buffer_.erase(0, start_);
    start_ = 0;
  }
}

std::vector<std::string_view> LogText::tail(std::size_t count) const {
  std::vector<std::string_view> lines;
  std::string_view rest = text();
  while (!rest.empty() && lines.size() < count) {
    const std::size_t lineFeed = rest.rfind('\n');
    const std::size_t begin = lineFeed == std::string_view::npos ? 0 : lineFeed + 1;
    if (begin < rest.size()) lines.push_back(rest.substr(begin));
    rest = rest.substr(0, lineFeed == std::string_view::npos ? 0 : lineFeed);
  }
  std::reverse(lines.begin(), lines.end());
  return lines;
}

}  // namespace tarnwick
