// Decoding against a second decoder, which knows no table of bytes: it computes code points,
// encodes them back, and compares.
#include "core/text/utf8.h"

#include <cstdint>
#include <string>
#include <string_view>

#include "support/input.h"
#include "support/require.h"

using namespace tarnwick;
using fuzz::require;

namespace {

std::string encoded(std::uint32_t codePoint, std::size_t length) {
  if (length == 1) return {static_cast<char>(codePoint)};
  constexpr std::uint32_t leads[] = {0, 0, 0xC0, 0xE0, 0xF0};
  std::string bytes(length, '\0');
  for (std::size_t i = length - 1; i > 0; --i, codePoint >>= 6U) {
    bytes[i] = static_cast<char>(0x80U | (codePoint & 0x3FU));
  }
  bytes[0] = static_cast<char>(leads[length] | codePoint);
  return bytes;
}

bool isCharacter(std::string_view bytes) {
  const std::size_t length = bytes.size();
  constexpr std::uint32_t masks[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
  std::uint32_t codePoint = static_cast<unsigned char>(bytes[0]) & masks[length];
  for (const char c : bytes.substr(1)) {
    codePoint = (codePoint << 6U) | (static_cast<unsigned char>(c) & 0x3FU);
  }
  const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  return codePoint >= smallest[length] && codePoint <= 0x10FFFF && !isSurrogate &&
         encoded(codePoint, length) == bytes;
}

/// What may follow the first bytes of a character is one range, so that trying both ends is enough.
bool beginsCharacter(std::string_view bytes) {
  for (std::size_t missing = 1; bytes.size() + missing <= 4; ++missing) {
    for (const char filler : {'\x80', '\xBF'}) {
      if (isCharacter(std::string(bytes) + std::string(missing, filler))) return true;
    }
  }
  return false;
}

struct Decoded {
  std::string text;
  std::size_t firstFault;
};

Decoded decodeSlowly(std::string_view bytes) {
  Decoded result{{}, bytes.size()};
  for (std::size_t at = 0; at < bytes.size();) {
    const std::string_view rest = bytes.substr(at);
    std::size_t length = 1;
    while (
        length < 4 && length < rest.size() && !isCharacter(rest.substr(0, length)) &&
        beginsCharacter(rest.substr(0, length)) &&
        (isCharacter(rest.substr(0, length + 1)) || beginsCharacter(rest.substr(0, length + 1)))) {
      ++length;
    }
    if (isCharacter(rest.substr(0, length))) {
      result.text.append(rest.substr(0, length));
    } else {
      result.firstFault = std::min(result.firstFault, at);
      result.text.append("\xEF\xBF\xBD");
    }
    at += length;
  }
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::string_view bytes = input.rest();
  const Decoded expected = decodeSlowly(bytes);

  const std::size_t prefix = wellFormedUtf8Prefix(bytes);
  require(prefix == expected.firstFault, "the well-formed prefix ends at the first fault");
  require(decodeUtf8(std::string(bytes)) == expected.text, "both decoders agree");
  require(wellFormedUtf8Prefix(expected.text) == expected.text.size(), "what comes out is UTF-8");

  std::string appended = "before";
  appendUtf8Replacing(appended, bytes);
  require(appended == "before" + expected.text, "appending keeps what was there");
  return 0;
}
