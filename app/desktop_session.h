#pragma once

#include <memory>
#include <optional>

#include "app/backend.h"
#include "core/controller/stay_awake.h"
#include "platform/desktop_sleep_inhibitor.h"
#include "platform/qt/freedesktop_notifications.h"
#include "platform/qt/keychain_watch.h"
#include "platform/qt/tray_hosts.h"
#include "ui/common/window_opener.h"
#include "ui/notices/notices.h"
#include "ui/tray/tray.h"

namespace tarnwick {

/// What the application does in the user's desktop outside of its own windows: the tray item,
/// messages, keeping awake, and noticing that the secret store came up. All of it is optional: each
/// part does nothing where the desktop has no such service. Lives as long as the process; interface
/// thread.
class DesktopSession {
 public:
  /// `openMainWindow` is given the desktop's permission to take the focus, where there is one.
  DesktopSession(Backend& backend, WindowOpener& windows,
                 DesktopNotifications::Clicked openMainWindow);

  /// Takes the tray item and the message away, and lets the computer sleep.
  void leave();

 private:
  DesktopSleepInhibitor inhibitor_;
  FreedesktopNotifications notifications_;
  std::optional<StayAwake> awake_;
  std::optional<Notices> notices_;
  std::optional<Tray> tray_;
  std::optional<TrayHosts> trayHosts_;
  KeychainWatch keychain_;
};

}  // namespace tarnwick
