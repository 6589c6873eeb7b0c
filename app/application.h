#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/async/worker_queue.h"
#include "core/controller/desktop_controller.h"
#include "core/process/cli.h"
#include "core/process/tools.h"
#include "core/settings/app_paths.h"
#include "platform/curl_http_probe.h"
#include "platform/json_key_value_store.h"
#include "platform/libsecret_service.h"
#include "platform/qt/qt_main_thread.h"
#include "platform/qt/qt_workspace.h"
#include "platform/system_random.h"
#include "platform/xdg_login_item.h"
#include "ui/common/dialog_service.h"
#include "ui/common/render_scheduler.h"
#include "ui/common/window_opener.h"
#include "ui/desktop/desktop_services.h"
#include "ui/tray/tray_item.h"
#include "ui/web/web_module_loader.h"

namespace tarnwick {

/// Everything that lives as long as the process, each part made from those before it. Needs a
/// QApplication; interface thread.
class Application {
 public:
  explicit Application(const AppPaths& paths);
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  void showMainWindow() { windows_.openWindow(mainWindowId); }
  /// Asks the desktop for a place in its tray, which takes some messages back and forth.
  void showTrayItem();

  /// The last steps before the process ends: the windows go, and Colima stops if the user wants it.
  void finish();

 private:
  void addWindows();
  void tellProblem(const std::string& sentence);
  void watchPhase();

  const AppPaths paths_;
  QtMainThread mainThread_;
  ThreadPool workers_;
  Tools tools_;
  CLI cli_;
  std::vector<std::string> earlyProblems_;
  DesktopController* listening_ = nullptr;  ///< takes problems once there is a controller
  JsonKeyValueStore store_;
  LibsecretService secrets_;
  XdgLoginItem loginItem_;
  SystemRandom random_;
  CurlHttpProbe httpProbe_;
  QtWorkspace workspace_;
  DesktopController controller_;
  Docker docker_;  ///< for the logs window
  QtDialogService dialogs_;
  WebModuleLoader web_;
  DesktopServices desktopServices_;
  Windows windows_;
  std::optional<TrayItem> tray_;
  bool wasBusy_ = false;
  RenderScheduler phaseWatch_;
};

}  // namespace tarnwick
