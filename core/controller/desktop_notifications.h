#pragma once

#include <functional>
#include <string>

namespace tarnwick {

/// Short messages that the desktop shows outside of our windows, one at a time. Where it has no
/// service for that nothing happens. Calls return at once; main thread only.
class DesktopNotifications {
 public:
  /// Called from the event loop with what the desktop gives to whoever is to take the focus; empty
  /// where it gives nothing.
  using Clicked = std::function<void(const std::string& activationToken)>;

  DesktopNotifications() = default;
  DesktopNotifications(const DesktopNotifications&) = delete;
  DesktopNotifications& operator=(const DesktopNotifications&) = delete;
  virtual ~DesktopNotifications() = default;

  /// Shows plain text in the place of what was shown before.
  virtual void show(const std::string& title, const std::string& text, Clicked clicked) = 0;
  /// Takes away what is shown, if anything is.
  virtual void withdraw() = 0;
};

}  // namespace tarnwick
