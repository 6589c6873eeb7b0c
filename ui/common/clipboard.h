#pragma once

#include <QString>

namespace tarnwick {

/// Puts plain text on the clipboard. Interface thread.
void copyText(const QString& text);

}  // namespace tarnwick
