#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace tarnwick {

/// Numbers that look random and follow from the seed alone, on every machine and library.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : state_(seed) {}

  /// 0 to `count` - 1; `count` is not 0.
  std::size_t below(std::size_t count) { return static_cast<std::size_t>(next() % count); }
  bool percent(std::size_t chance) { return below(100) < chance; }
  template <typename T>
  T pick(std::initializer_list<T> choices) {
    return choices.begin()[below(choices.size())];
  }

 private:
  // SplitMix64: one multiplication chain over a counter.
  std::uint64_t next() {
    std::uint64_t bits = state_ += 0x9e3779b97f4a7c15U;
    bits = (bits ^ (bits >> 30U)) * 0xbf58476d1ce4e5b9U;
    bits = (bits ^ (bits >> 27U)) * 0x94d049bb133111ebU;
    return bits ^ (bits >> 31U);
  }

  std::uint64_t state_;
};

}  // namespace tarnwick
