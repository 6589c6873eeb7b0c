#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/settings/flavor.h"

namespace tarnwick {

/// Everything needed to create the desktop's container.
struct LaunchConfig {
  Flavor flavor;
  std::int64_t httpPort = 0;   ///< host port of the container's port 3000, written unchecked
  std::int64_t httpsPort = 0;  ///< host port of the container's port 3001, written unchecked
  std::string timezone;        ///< IANA name
  bool passwordProtected = false;
  std::optional<std::string> sharePath;  ///< host folder shown at /config/MacShare
  std::string registryHost;              ///< where the image comes from, without a scheme
};

/// "lscr.io/linuxserver/webtop:latest": the registry host, the image, the flavor's tag.
[[nodiscard]] std::string imageReference(const std::string& registryHost, const Flavor& flavor);

}  // namespace tarnwick
