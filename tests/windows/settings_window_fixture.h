#pragma once

#include <QComboBox>
#include <gtest/gtest.h>

#include "tests/windows/windows_fixture.h"
#include "ui/settings_window/settings_window.h"

namespace tarnwick {

/// The settings window on a controller with services in memory.
class SettingsWindowTest : public testing::Test, public WindowsWorld {
 protected:
  SettingsWindowTest() { open(); }
  ~SettingsWindowTest() override { delete window; }

  void open() {
    delete window;
    window = new SettingsWindow(
        SettingsWindowServices{controller, mainThread, dialogs, workspace, paths});
    window->show();
    settle();
  }
  void press(const QString& name) {
    shown(*window, name)->click();
    settle();
  }
  bool isChecked(const QString& name) { return shown(*window, name)->isChecked(); }
  QComboBox& picker() { return *window->findChild<QComboBox*>(); }

  SettingsStore& settings = controller.settings;
  QPointer<SettingsWindow> window;
};

}  // namespace tarnwick
