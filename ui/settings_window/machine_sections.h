#pragma once

#include <QPushButton>

#include "core/controller/desktop_controller.h"
#include "ui/home/flavor_picker.h"
#include "ui/settings_window/number_field.h"
#include "ui/settings_window/settings_section.h"
#include "ui/settings_window/stepper.h"

namespace tarnwick {

/// Which desktop.
class DesktopSection final : public SettingsSection {
 public:
  explicit DesktopSection(DesktopController& controller);
  void render() override;

 private:
  DesktopController& controller_;
  FlavorPicker* flavor_;
};

/// The sizes of the virtual machine.
class ColimaSection final : public SettingsSection {
 public:
  explicit ColimaSection(DesktopController& controller);
  void render() override;

 private:
  DesktopController& controller_;
  Stepper* cpu_;
  Stepper* memory_;
  Stepper* disk_;
  QPushButton* stop_;
};

/// The two host ports.
class PortsSection final : public SettingsSection {
 public:
  explicit PortsSection(SettingsStore& settings);
  void render() override;

 private:
  SettingsStore& settings_;
  NumberField* http_;
  NumberField* https_;
};

}  // namespace tarnwick
