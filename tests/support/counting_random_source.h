#pragma once

#include "core/settings/random_source.h"

namespace tarnwick {

/// "Random" bytes that count up: 0, 1, 2, … over all calls.
class CountingRandomSource final : public RandomSource {
 public:
  bool fails = false;

  std::optional<std::vector<std::uint8_t>> bytes(std::size_t count) override {
    if (fails) return std::nullopt;
    std::vector<std::uint8_t> result;
    while (result.size() < count) result.push_back(next_++);
    return result;
  }

 private:
  std::uint8_t next_ = 0;
};

}  // namespace tarnwick
