#pragma once

#include <array>
#include <string>

namespace tarnwick {

/// One variant of the desktop image. The catalog is fixed when the program is built.
struct Flavor {
  std::string id;        ///< kept in the settings and in the volume's name
  std::string tag;       ///< image tag
  std::string name;      ///< short name shown in lists
  std::string desktop;   ///< desktop environment and distribution
  std::string sizeText;  ///< approximate download size, display text only

  bool operator==(const Flavor&) const = default;

  /// The eight flavors in the order of the pickers.
  [[nodiscard]] static const std::array<Flavor, 8>& all();
  /// The flavor with exactly this id, or null.
  [[nodiscard]] static const Flavor* find(const std::string& id);
  /// As find; the standard flavor ("alpine-xfce") for an unknown id.
  [[nodiscard]] static const Flavor& resolve(const std::string& id);

  /// "Standard: XFCE on Alpine, about 1 GB", as pickers show it.
  [[nodiscard]] std::string pickerText() const;
  /// The docker volume with this flavor's home folder.
  [[nodiscard]] std::string volumeName() const;
};

}  // namespace tarnwick
