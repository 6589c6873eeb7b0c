#pragma once

#include "core/settings/random_source.h"

namespace tarnwick {

/// The kernel's random source. Any thread.
class SystemRandom final : public RandomSource {
 public:
  std::optional<std::vector<std::uint8_t>> bytes(std::size_t count) override;
};

}  // namespace tarnwick
