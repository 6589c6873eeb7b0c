#pragma once

#include <QDialog>

#include "core/controller/desktop_controller.h"
#include "ui/common/render_scheduler.h"

namespace tarnwick {

/// Tells who holds a port that the desktop needs and offers a free pair instead. Always 460 wide;
/// modal to the window of its parent. Shows the record that it was made with, and closes by itself
/// when the controller no longer has that one. Closing it by any means but the button that uses the
/// free pair dismisses the conflict.
class PortConflictSheet final : public QDialog {
  Q_OBJECT

 public:
  static constexpr int exactWidth = 460;

  PortConflictSheet(DesktopController& controller, PortConflict conflict, QWidget* parent);

  void done(int result) override;

 protected:
  bool event(QEvent* event) override;

 private:
  void addTexts();
  void addButtons();
  void followController();

  DesktopController& controller_;
  PortConflict conflict_;
  bool isOver_ = false;
  RenderScheduler scheduler_;
};

}  // namespace tarnwick
