#pragma once

#include <string>

class QWidget;

namespace tarnwick {

/// What the desktop gave this start so that its window may come to the front; empty when nothing.
/// To be read before a QApplication is made, which takes it out of the environment.
[[nodiscard]] std::string activationTokenOfThisStart();

/// To be called before a window is asked to come to the front on behalf of another start.
void useActivationToken(const std::string& token);

}  // namespace tarnwick
