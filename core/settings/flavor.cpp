#include "core/settings/flavor.h"

#include <algorithm>

namespace tarnwick {

namespace {
constexpr std::size_t standardIndex = 1;
}

const std::array<Flavor, 8>& Flavor::all() {
  static const std::array<Flavor, 8> catalog = {{
      {"alpine-i3", "alpine-i3", "Tiny", "i3 on Alpine", "770 MB"},
      {"alpine-xfce", "latest", "Standard", "XFCE on Alpine", "1 GB"},
      {"debian-xfce", "debian-xfce", "Debian XFCE", "XFCE on Debian", "1.2 GB"},
      {"ubuntu-xfce", "ubuntu-xfce", "Ubuntu XFCE", "XFCE on Ubuntu", "1.2 GB"},
      {"fedora-xfce", "fedora-xfce", "Fedora XFCE", "XFCE on Fedora", "1 GB"},
      {"ubuntu-mate", "ubuntu-mate", "Ubuntu MATE", "MATE on Ubuntu", "1.4 GB"},
      {"debian-kde", "debian-kde", "Debian KDE", "KDE Plasma on Debian", "1.4 GB"},
      {"ubuntu-kde", "ubuntu-kde", "Ubuntu KDE", "KDE Plasma on Ubuntu", "1.5 GB"},
  }};
  return catalog;
}

const Flavor* Flavor::find(const std::string& id) {
  const auto found = std::ranges::find(all(), id, &Flavor::id);
  return found == all().end() ? nullptr : &*found;
}

const Flavor& Flavor::resolve(const std::string& id) {
  const Flavor* const found = find(id);
  return found != nullptr ? *found : all()[standardIndex];
}

std::string Flavor::pickerText() const {
  return name + ": " + desktop + ", about " + sizeText;
}

std::string Flavor::volumeName() const {
  return "tarnwick-config-" + id;
}

}  // namespace tarnwick
