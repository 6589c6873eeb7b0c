#include "app/activation.h"

#include <QByteArray>
#include <QGuiApplication>
#include <cstdlib>

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

}  // namespace tarnwick
