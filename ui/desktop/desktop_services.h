#pragma once

#include "core/controller/workspace.h"
#include "core/settings/settings_store.h"
#include "ui/web/web_desktop_view.h"

namespace tarnwick {

/// What a desktop page may ask of the program, answered from the settings and with the desktop's
/// own dialogs. Interface thread only.
class DesktopServices final : public WebDesktopServices {
 public:
  /// The engine keeps its data below `storageFolder` and `cacheFolder`.
  DesktopServices(SettingsStore& settings, Workspace& workspace, QString storageFolder,
                  QString cacheFolder);

  bool requirePassword() override;
  std::optional<QString> password() override;
  void openUrl(const QUrl& url) override;
  std::optional<QString> askSavePath(QWidget* parent, const QString& suggestedName) override;
  QStringList chooseFiles(QWidget* parent, bool allowsMultipleSelection,
                          bool allowsDirectories) override;
  std::optional<int> showMessage(QWidget* parent, const QString& text,
                                 const QStringList& buttons) override;
  QString storageFolder() override { return storageFolder_; }
  QString cacheFolder() override { return cacheFolder_; }

 private:
  SettingsStore& settings_;
  Workspace& workspace_;
  QString storageFolder_;
  QString cacheFolder_;
};

}  // namespace tarnwick
