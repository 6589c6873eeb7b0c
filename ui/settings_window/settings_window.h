#pragma once

#include <QWidget>
#include <vector>

#include "core/async/main_thread.h"
#include "core/controller/desktop_controller.h"
#include "core/controller/workspace.h"
#include "core/settings/app_paths.h"
#include "ui/common/dialog_service.h"
#include "ui/common/render_scheduler.h"
#include "ui/settings_window/settings_section.h"

namespace tarnwick {

/// What the settings window works with. All of it outlives the window.
struct SettingsWindowServices {
  DesktopController& controller;
  MainThread& mainThread;
  DialogService& dialogs;
  Workspace& workspace;
  const AppPaths& paths;
};

/// Every setting of the user, and the maintenance of machine and container. Each control writes at
/// once; there is nothing to confirm. Closing deletes the window, so that it starts afresh.
class SettingsWindow final : public QWidget {
 public:
  explicit SettingsWindow(SettingsWindowServices services);

 protected:
  bool event(QEvent* event) override;

 private:
  QWidget* makePage(SettingsWindowServices services);
  void render();

  std::vector<SettingsSection*> sections_;
  RenderScheduler scheduler_;
};

}  // namespace tarnwick
