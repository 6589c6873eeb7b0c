#include "app/activation.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QWidget>
#include <cstdlib>

#include "app/x11_activation.h"

namespace tarnwick {
namespace {

constexpr const char* waylandVariable = "XDG_ACTIVATION_TOKEN";
constexpr const char* x11Variable = "DESKTOP_STARTUP_ID";

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

}  // namespace

std::string activationTokenOfThisStart() {
  const std::string token = variable(waylandVariable);
  return token.empty() ? variable(x11Variable) : token;
}

// The Wayland plug-in reads the variable at the next request for activation, and clears it.
void useActivationToken(const std::string& token) {
  if (token.empty() || !QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
    return;
  }
  qputenv(waylandVariable, QByteArray::fromStdString(token));
}

// The X11 plug-in looks at a token only when the program starts.
void finishActivation(const std::string& token, const QWidget& window) {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (token.empty() || !x11) return;
  activateX11Window(x11->connection(), static_cast<std::uint32_t>(window.winId()), token);
}

}  // namespace tarnwick
