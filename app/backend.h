#pragma once

#include <string>
#include <vector>

#include "core/async/worker_queue.h"
#include "core/controller/desktop_controller.h"
#include "core/engine/docker.h"
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

namespace tarnwick {

/// Everything of the application that needs no window: the settings, the tools and the controller,
/// each part made from those before it. Works under a QCoreApplication, without a display. Lives as
/// long as the process, since tasks on worker threads use it until the end. Main thread.
class Backend {
 public:
  explicit Backend(const AppPaths& paths);
  Backend(const Backend&) = delete;
  Backend& operator=(const Backend&) = delete;

  [[nodiscard]] const AppPaths& paths() const { return paths_; }
  [[nodiscard]] QtMainThread& mainThread() { return mainThread_; }
  [[nodiscard]] ThreadPool& workers() { return workers_; }
  [[nodiscard]] const Tools& tools() const { return tools_; }
  [[nodiscard]] CLI& cli() { return cli_; }
  [[nodiscard]] JsonKeyValueStore& store() { return store_; }
  [[nodiscard]] QtWorkspace& workspace() { return workspace_; }
  [[nodiscard]] DesktopController& controller() { return controller_; }
  /// For questions that the controller does not ask.
  [[nodiscard]] Docker& docker() { return docker_; }

 private:
  void tellProblem(const std::string& sentence);

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
  Docker docker_;
};

}  // namespace tarnwick
