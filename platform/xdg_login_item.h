#pragma once

#include <string>

#include "core/settings/login_item.h"

namespace tarnwick {

/// The entry `tarnwick.desktop` among the programs that the desktop starts at login. An entry that
/// the user has switched off with a tool of the desktop, for all desktops or for the present one,
/// counts as not enabled.
class XdgLoginItem final : public LoginItem {
 public:
  /// `configFolder` is the user's configuration folder, `program` the absolute path of ours.
  XdgLoginItem(const std::string& configFolder, std::string program);

  void registerItem() override;
  void unregisterItem() override;
  [[nodiscard]] bool isEnabled() const override;

 private:
  std::string folder_;
  std::string path_;
  std::string program_;
};

}  // namespace tarnwick
