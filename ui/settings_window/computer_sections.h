#pragma once

#include <QCheckBox>
#include <QPushButton>

#include "core/controller/desktop_controller.h"
#include "ui/common/dialog_service.h"
#include "ui/common/elided_label.h"
#include "ui/settings_window/settings_section.h"

namespace tarnwick {

/// The folder of the user's computer that Linux sees.
class FolderSection final : public SettingsSection {
 public:
  FolderSection(SettingsStore& settings, DialogService& dialogs);
  void render() override;

 private:
  void chooseFolder();

  SettingsStore& settings_;
  DialogService& dialogs_;
  ElidedLabel* path_;
  QPushButton* stop_;
};

/// What starts when the user logs in, and what stops when they quit.
class StartupSection final : public SettingsSection {
 public:
  explicit StartupSection(DesktopController& controller);
  void render() override;

 private:
  DesktopController& controller_;
  QCheckBox* launchAtLogin_;
  QCheckBox* colimaAtLogin_;
  QCheckBox* stopColima_;
};

}  // namespace tarnwick
