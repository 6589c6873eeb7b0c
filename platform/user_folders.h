#pragma once

#include <string>

namespace tarnwick {

/// The user's home as the account database names it, whatever $HOME says; that variable serves only
/// where the database has no entry. Main thread, as are the following.
[[nodiscard]] std::string userHomeFolder();

/// Where programs keep the user's configuration, e.g. /home/ann/.config. Not created.
[[nodiscard]] std::string userConfigFolder();

/// Where programs keep the user's data, e.g. /home/ann/.local/share. Not created.
[[nodiscard]] std::string userDataFolder();

}  // namespace tarnwick
