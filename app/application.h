#pragma once

#include <optional>
#include <string>

#include "app/backend.h"
#include "app/desktop_session.h"
#include "app/diagnostics_copier.h"
#include "ui/common/dialog_service.h"
#include "ui/common/render_scheduler.h"
#include "ui/common/window_opener.h"
#include "ui/desktop/desktop_services.h"
#include "ui/web/web_module_loader.h"

namespace tarnwick {

/// The windows, the web view and the tray item on top of the backend, which outlives it. Needs a
/// QApplication and lives as long as the process; interface thread.
class Application {
 public:
  explicit Application(Backend& backend);
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  /// Opens the window with this id, or brings it to the front with the help of an activation token,
  /// which may be empty.
  void openWindow(const std::string& id, const std::string& activationToken);

  /// Takes up what the user's desktop offers beside windows: the tray, messages and more. From then
  /// on the main window opens by itself where there is neither a window nor a tray.
  void joinDesktop();

  /// The last steps before the process ends: the windows go, and Colima stops if the user wants it.
  void finish();

 private:
  void addWindows();
  [[nodiscard]] Facts webFacts() const;
  void watchPhase();

  Backend& backend_;
  QtDialogService dialogs_;
  WebModuleLoader web_;
  DesktopServices desktopServices_;
  DiagnosticsCopier diagnostics_;
  Windows windows_;
  std::optional<DesktopSession> session_;
  bool wasBusy_ = false;
  RenderScheduler phaseWatch_;
};

}  // namespace tarnwick
