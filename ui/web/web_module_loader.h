#pragma once

#include <QtCore/QString>

#include "ui/web/web_desktop_view.h"

namespace tarnwick {

/// Finds and loads the module with the web engine, once, when the first desktop is shown: until
/// then the program carries neither the engine nor an OpenGL context. Interface thread only.
class WebModuleLoader {
 public:
  /// The module, or null; then `error()` says why in one sentence. A failure is tried again at the
  /// next call. Needs a QApplication.
  WebDesktopModule* module();
  [[nodiscard]] const QString& error() const { return error_; }

  /// As WebDesktopModule::forgetCertificate; nothing to do while no module is loaded.
  void forgetCertificate();

  /// As WebDesktopModule::engineVersion; empty while no module is loaded.
  [[nodiscard]] QString engineVersion() const;

 private:
  WebDesktopModule* module_ = nullptr;
  QString error_;
};

}  // namespace tarnwick
