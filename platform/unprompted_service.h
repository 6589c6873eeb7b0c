#pragma once

#include <libsecret/secret.h>

namespace tarnwick {

/// The type of a Secret Service client that refuses every prompt with "is locked" instead of
/// showing it to the user.
[[nodiscard]] GType unpromptedServiceType();

}  // namespace tarnwick
