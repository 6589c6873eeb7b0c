#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "app/wish.h"
#include "core/controller/desktop_controller.h"

namespace tarnwick {

/// What scripts and their authors are told of the desktop. Holds no secret.
struct DesktopStatus {
  enum class State { stopped, starting, installing, running, stopping };
  State state = State::stopped;
  std::string flavor;   ///< its id
  std::string desktop;  ///< desktop environment and distribution
  std::int64_t httpPort = 0;
  std::int64_t httpsPort = 0;
  std::optional<std::string> url;  ///< of a running desktop
  std::string message;             ///< the present step, or why it stopped; may be empty
};

/// Main thread.
[[nodiscard]] DesktopStatus statusOf(const DesktopController& controller);

/// "The desktop is running (XFCE on Alpine, https://127.0.0.1:3001/).", or what else there is.
[[nodiscard]] std::string statusLine(const DesktopStatus& status);
/// The same as a JSON object on one line, with the program's version.
[[nodiscard]] std::string statusJson(const DesktopStatus& status);

/// The answer to Wish::status and Wish::statusJson.
[[nodiscard]] Answer statusAnswer(const DesktopStatus& status, Wish wish);

}  // namespace tarnwick
