#include "practice/desktop/settings.h"

#include <nlohmann/json.hpp>

namespace tarnwick::practice {

DesktopSettings readDesktopSettings(const std::string& json) {
  const auto root = nlohmann::json::parse(json);
  DesktopSettings settings;
  settings.stateFile = root.at("stateFile").get<std::string>();
  settings.volumeFolder = root.at("volumeFolder").get<std::string>();
  settings.httpPort = root.at("httpPort").get<int>();
  settings.httpsPort = root.at("httpsPort").get<int>();
  settings.sharesFolder = root.at("sharesFolder").get<bool>();
  settings.user = root.at("user").get<std::string>();
  settings.locked = root.at("locked").get<bool>();
  settings.startDelay = root.at("startDelay").get<double>();
  if (root.contains("password")) settings.password = root.at("password").get<std::string>();

  constexpr std::string_view kVolumePrefix = "tarnwick-config-";
  settings.flavor = root.at("volume").get<std::string>();
  if (settings.flavor.starts_with(kVolumePrefix)) settings.flavor.erase(0, kVolumePrefix.size());

  std::set<Fault> faults;
  for (const auto& name : root.at("faults")) {
    if (const auto fault = faultNamed(name.get<std::string>())) faults.insert(*fault);
  }
  settings.faults = Faults(std::move(faults));
  return settings;
}

}  // namespace tarnwick::practice
