#pragma once

#include <string_view>

#include "ui/web/rules/challenge.h"

namespace tarnwick {

/// What the WWW-Authenticate field of an answer asks for; several fields are joined by commas.
///
/// `httpBasic` only when Basic is all that is offered: a web engine picks the scheme that it thinks
/// strongest, so next to Digest an answer meant for Basic would be used for a digest.
[[nodiscard]] AuthenticationMethod challengeScheme(std::string_view wwwAuthenticate);

}  // namespace tarnwick
