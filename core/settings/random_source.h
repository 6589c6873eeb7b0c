#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tarnwick {

/// The system's cryptographically secure random source.
class RandomSource {
 public:
  RandomSource() = default;
  RandomSource(const RandomSource&) = delete;
  RandomSource& operator=(const RandomSource&) = delete;
  virtual ~RandomSource() = default;

  /// `count` secure bytes, or none when the source reports an error.
  virtual std::optional<std::vector<std::uint8_t>> bytes(std::size_t count) = 0;
};

}  // namespace tarnwick
