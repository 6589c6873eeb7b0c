#pragma once

#include <string>

class QWidget;

namespace tarnwick {

/// What the desktop gave this start so that its window may come to the front; empty when nothing.
/// To be read before a QApplication is made, which takes it out of the environment.
[[nodiscard]] std::string activationTokenOfThisStart();

/// To be called before a window is opened, or asked to come to the front, on behalf of whoever got
/// the token. An empty token is none. Interface thread, as is the following.
void useActivationToken(const std::string& token);

/// To be called with the window after that.
void finishActivation(const std::string& token, const QWidget& window);

}  // namespace tarnwick
