#pragma once

#include <string>

namespace tarnwick {

/// What the desktop shell of the user's computer does for us. Main thread.
class Workspace {
 public:
  Workspace() = default;
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;
  virtual ~Workspace() = default;

  /// Opens the address in the user's default browser.
  virtual void openUrl(const std::string& url) = 0;
  /// Opens the folder in the file manager.
  virtual void revealFolder(const std::string& path) = 0;
  /// The IANA name of the system's time zone, e.g. Europe/Berlin.
  [[nodiscard]] virtual std::string timeZone() const = 0;
};

}  // namespace tarnwick
