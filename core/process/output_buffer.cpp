#include "core/process/output_buffer.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <sys/mman.h>

namespace tarnwick {
namespace {

constexpr std::size_t mebibyte = 1024 * 1024;
/// Up to here the string's own growth is good enough; nearly all tools stay far below.
constexpr std::size_t longOutput = 4 * mebibyte;
/// Room that is not written to costs address space only.
constexpr std::size_t firstRoom = 256 * mebibyte;
constexpr std::size_t growth = 4;

void preferLargePages(std::string& text) {
  constexpr std::uintptr_t page = 2 * mebibyte;
  const auto begin = reinterpret_cast<std::uintptr_t>(text.data());
  const std::uintptr_t first = (begin + page - 1) / page * page;
  const std::uintptr_t last = (begin + text.capacity()) / page * page;
  // Only a hint: where it is refused the pages stay small.
  if (first < last) ::madvise(text.data() + (first - begin), last - first, MADV_HUGEPAGE);
}

}  // namespace

void OutputBuffer::makeRoom(std::size_t more) {
  const std::size_t needed = bytes_.size() + more;
  if (needed <= longOutput) return;
  try {
    bytes_.reserve(std::max({needed, firstRoom, bytes_.size() * growth}));
  } catch (const std::bad_alloc&) {
    return;  // a system that counts address space; the string asks for less by itself
  }
  preferLargePages(bytes_);
}

}  // namespace tarnwick
