#include "core/text/utf8.h"

#include <cstdint>
#include <cstring>

namespace tarnwick {
namespace {

/// Number of ASCII bytes at the start, rounded down to whole blocks while the blocks last.
std::size_t asciiPrefix(const char* data, std::size_t size) {
  constexpr std::uint64_t highBits = 0x8080808080808080U;
  constexpr std::size_t block = 64;
  std::size_t i = 0;
  for (; i + block <= size; i += block) {
    std::uint64_t words[block / 8];
    std::memcpy(words, data + i, block);
    std::uint64_t all = 0;
    for (const std::uint64_t word : words) all |= word;
    if ((all & highBits) != 0) break;
  }
  while (i < size && static_cast<unsigned char>(data[i]) < 0x80) ++i;
  return i;
}

struct Sequence {
  std::size_t length;  ///< of the character, or of the longest start of one
  bool complete;
};

/// Looks at the first sequence of `bytes`, which starts with a byte above 0x7F.
Sequence firstSequence(std::string_view bytes) {
  const auto at = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned lead = at(0);
  std::size_t wanted = 0;
  if (lead >= 0xC2 && lead <= 0xDF) wanted = 2;
  if (lead >= 0xE0 && lead <= 0xEF) wanted = 3;
  if (lead >= 0xF0 && lead <= 0xF4) wanted = 4;
  if (wanted == 0) return {1, false};

  // The second byte's range keeps overlong forms, surrogates and what is beyond U+10FFFF out.
  unsigned low = 0x80;
  unsigned high = 0xBF;
  if (lead == 0xE0) low = 0xA0;
  if (lead == 0xED) high = 0x9F;
  if (lead == 0xF0) low = 0x90;
  if (lead == 0xF4) high = 0x8F;
  for (std::size_t i = 1; i < wanted; ++i) {
    if (i == bytes.size() || at(i) < low || at(i) > high) return {i, false};
    low = 0x80;
    high = 0xBF;
  }
  return {wanted, true};
}

}  // namespace

std::size_t wellFormedUtf8Prefix(std::string_view bytes) {
  std::size_t i = 0;
  while (true) {
    i += asciiPrefix(bytes.data() + i, bytes.size() - i);
    while (i < bytes.size() && static_cast<unsigned char>(bytes[i]) >= 0x80) {
      const Sequence sequence = firstSequence(bytes.substr(i));
      if (!sequence.complete) return i;
      i += sequence.length;
    }
    if (i == bytes.size()) return i;
  }
}

void appendUtf8Replacing(std::string& text, std::string_view bytes) {
  while (true) {
    const std::size_t good = wellFormedUtf8Prefix(bytes);
    text.append(bytes.substr(0, good));
    if (good == bytes.size()) return;
    bytes.remove_prefix(good);
    text.append("\xEF\xBF\xBD");
    bytes.remove_prefix(firstSequence(bytes).length);
  }
}

std::string decodeUtf8(std::string bytes) {
  const std::size_t good = wellFormedUtf8Prefix(bytes);
  if (good == bytes.size()) return bytes;
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  text.append(bytes, 0, good);
  appendUtf8Replacing(text, std::string_view(bytes).substr(good));
  return text;
}

}  // namespace tarnwick
