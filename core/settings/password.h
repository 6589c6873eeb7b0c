#pragma once

#include <string>

#include "core/settings/random_source.h"

namespace tarnwick {

/// A new desktop password: 24 lowercase hexadecimal digits from 12 bytes of `random`, or 32 from a
/// random UUID when `random` fails. Any thread.
[[nodiscard]] std::string makePassword(RandomSource& random);

/// The 32 lowercase digits of a new random UUID. `kernelFile` gives one at each read; what it
/// cannot give is made from other state that is the process's own. Any thread.
[[nodiscard]] std::string randomUuidDigits(
    const std::string& kernelFile = "/proc/sys/kernel/random/uuid");

}  // namespace tarnwick
