#include "core/engine/launch_config.h"

namespace tarnwick {

std::string imageReference(const std::string& registryHost, const Flavor& flavor) {
  return registryHost + "/linuxserver/webtop:" + flavor.tag;
}

}  // namespace tarnwick
