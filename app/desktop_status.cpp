#include "app/desktop_status.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace tarnwick {
namespace {

using State = DesktopStatus::State;

State stateOf(const DesktopController& controller) {
  if (controller.isStopping.get()) return State::stopping;
  switch (controller.phase.get()) {
    case Phase::busy:
      return controller.installing.get() ? State::installing : State::starting;
    case Phase::running:
      return State::running;
    case Phase::idle:
      break;
  }
  return State::stopped;
}

std::string messageOf(const DesktopController& controller, State state) {
  if (state == State::starting || state == State::installing) return controller.progressText.get();
  if (const auto& conflict = controller.portConflict.get(); conflict && state == State::stopped) {
    return fmt::format("Port {} is already in use.", conflict->port);
  }
  if (const auto& error = controller.errorSummary.get()) return *error;
  return controller.notice.get().value_or(std::string());
}

const char* wordFor(State state) {
  switch (state) {
    case State::starting:
      return "starting";
    case State::installing:
      return "installing";
    case State::running:
      return "running";
    case State::stopping:
      return "stopping";
    case State::stopped:
      break;
  }
  return "stopped";
}

std::string headed(const char* head, const std::string& message, const char* whenEmpty) {
  return message.empty() ? std::string(whenEmpty) : std::string(head) + message;
}

}  // namespace

DesktopStatus statusOf(const DesktopController& controller) {
  DesktopStatus status;
  status.state = stateOf(controller);
  status.flavor = controller.currentFlavor().id;
  status.desktop = controller.currentFlavor().desktop;
  status.httpPort = controller.settings.httpPort;
  status.httpsPort = controller.settings.httpsPort;
  if (status.state == State::running) status.url = controller.desktopURL();
  status.message = messageOf(controller, status.state);
  return status;
}

std::string statusLine(const DesktopStatus& status) {
  switch (status.state) {
    case State::starting:
      return headed("Starting: ", status.message, "Starting…");
    case State::installing:
      return headed("Installing: ", status.message, "Installing…");
    case State::stopping:
      return "Stopping…";
    case State::running:
      return "The desktop is running (" + status.desktop + (status.url ? ", " + *status.url : "") +
             ").";
    case State::stopped:
      break;
  }
  return headed("Stopped: ", status.message, "Stopped.");
}

std::string statusJson(const DesktopStatus& status) {
  nlohmann::ordered_json json;
  json["phase"] = wordFor(status.state);
  json["flavor"] = status.flavor;
  json["desktop"] = status.desktop;
  json["httpPort"] = status.httpPort;
  json["httpsPort"] = status.httpsPort;
  json["url"] = status.url ? nlohmann::ordered_json(*status.url) : nullptr;
  json["message"] = status.message;
  json["version"] = TARNWICK_VERSION;
  // A tool's output may have left bytes in the message that are no text.
  return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

Answer statusAnswer(const DesktopStatus& status, Wish wish) {
  const bool running = status.state == State::running;
  return {running ? ExitCode::done : ExitCode::notRunning,
          wish == Wish::statusJson ? statusJson(status) : statusLine(status)};
}

}  // namespace tarnwick
