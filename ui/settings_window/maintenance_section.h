#pragma once

#include <QPushButton>
#include <functional>

#include "core/controller/desktop_controller.h"
#include "ui/common/dialog_service.h"
#include "ui/settings_window/settings_section.h"

namespace tarnwick {

/// What rebuilds and removes things.
class MaintenanceSection final : public SettingsSection {
 public:
  /// `revealAppFolder` opens the application's folder in the file manager.
  MaintenanceSection(DesktopController& controller, DialogService& dialogs,
                     std::function<void()> revealAppFolder);
  void render() override;

 protected:
  bool event(QEvent* event) override;

 private:
  void lookDestructive();

  DesktopController& controller_;
  QPushButton* update_;
  QPushButton* apply_;
  QPushButton* remove_;
  TextLabel* notice_;
};

/// What the program does with the network and where the image comes from.
class AboutSection final : public SettingsSection {
 public:
  explicit AboutSection(DesktopController& controller);
  void render() override;

 private:
  DesktopController& controller_;
  TextLabel* image_;
};

}  // namespace tarnwick
