#include "core/process/line_splitter.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "core/text/utf8.h"

namespace tarnwick {
namespace {

/// A line can be as long as the tool likes; the room for an unusual one is not kept.
constexpr std::size_t keptCapacity = 64 * 1024;

/// The bytes that end a line or may begin a character that does.
constexpr auto suspicious = [] {
  std::array<bool, 256> table{};
  for (std::size_t byte = 0x0A; byte <= 0x0D; ++byte) table[byte] = true;
  table[0xC2] = true;
  table[0xE2] = true;
  return table;
}();

/// Index of the first suspicious byte at or after `at`, or the size of `text`.
std::size_t findSuspicious(std::string_view text, std::size_t at) {
  // Eight bytes at a time as long as none is below 0x0E or above 0x7F.
  constexpr std::uint64_t ones = 0x0101010101010101U;
  for (; at + 8 <= text.size(); at += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + at, 8);
    if ((((word - ones * 0x0E) | word) & (ones * 0x80)) == 0) continue;
    for (std::size_t i = at; i < at + 8; ++i) {
      if (suspicious[static_cast<unsigned char>(text[i])]) return i;
    }
  }
  while (at < text.size() && !suspicious[static_cast<unsigned char>(text[at])]) ++at;
  return at;
}

/// Length of the line end at the start of well-formed `text`, or 0.
std::size_t lineEndLength(std::string_view text) {
  const auto byte = static_cast<unsigned char>(text.front());
  if (byte >= 0x0A && byte <= 0x0D) return 1;
  if (text.starts_with("\xC2\x85")) return 2;
  if (text.starts_with("\xE2\x80\xA8") || text.starts_with("\xE2\x80\xA9")) return 3;
  return 0;
}

}  // namespace

void LineSplitter::feed(std::string_view chunk, const LineCallback& emit) {
  if (wellFormedUtf8Prefix(chunk) == chunk.size()) {
    split(chunk, emit);
    return;
  }
  decoded_.clear();
  appendUtf8Replacing(decoded_, chunk);
  split(decoded_, emit);
}

void LineSplitter::split(std::string_view text, const LineCallback& emit) {
  std::size_t begin = 0;
  for (std::size_t at = findSuspicious(text, 0); at < text.size(); at = findSuspicious(text, at)) {
    const std::size_t length = lineEndLength(text.substr(at));
    if (length == 0) {
      ++at;
      continue;
    }
    const std::string_view piece = text.substr(begin, at - begin);
    if (!pending_.empty()) {
      pending_.append(piece);
      flush(emit);
    } else if (!piece.empty()) {
      emit(piece);
    }
    at += length;
    begin = at;
  }
  pending_.append(text.substr(begin));
}

void LineSplitter::flush(const LineCallback& emit) {
  if (pending_.empty()) return;
  emit(pending_);
  if (pending_.capacity() > keptCapacity) pending_ = std::string();
  pending_.clear();
}

}  // namespace tarnwick
