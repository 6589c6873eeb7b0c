#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "practice/faults.h"

namespace tarnwick::practice {

/// What the starter tells the web server through its standard input. The password lives here only.
struct DesktopSettings {
  std::filesystem::path stateFile;     ///< the server ends when this names another one, or none
  std::filesystem::path volumeFolder;  ///< certificate and note are kept here
  std::string flavor;                  ///< flavor id, e.g. "alpine-xfce"
  int httpPort = 0;
  int httpsPort = 0;
  bool sharesFolder = false;
  std::string user;
  std::optional<std::string> password;
  bool locked = false;      ///< refuse every sign-in
  double startDelay = 0.0;  ///< seconds before the first port opens
  Faults faults;
};

/// Throws std::exception when the text is not what server_process.cpp writes.
DesktopSettings readDesktopSettings(const std::string& json);

}  // namespace tarnwick::practice
