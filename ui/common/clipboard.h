#pragma once

#include <QString>
#include <chrono>

namespace tarnwick {

/// Puts plain text on the clipboard.
void copyText(const QString& text);

/// As copyText, marked for clipboard histories as not to be kept, and cleared again after `life` if
/// it is still there.
void copySecret(const QString& secret, std::chrono::milliseconds life = std::chrono::seconds(60));

}  // namespace tarnwick
