#pragma once

#include <QPointer>
#include <QWidget>
#include <string>

#include "core/controller/desktop_controller.h"
#include "ui/common/render_scheduler.h"
#include "ui/common/text_label.h"
#include "ui/common/window_opener.h"
#include "ui/home/error_card.h"
#include "ui/home/progress_card.h"
#include "ui/home/top_card.h"

namespace tarnwick {

/// The application's control panel, shown whenever the desktop is not. Has no state of its own:
/// everything is derived from the controller and its settings in render().
class HomeScreen final : public QWidget {
 public:
  HomeScreen(DesktopController& controller, WindowOpener& windows, QWidget* parent = nullptr);
  ~HomeScreen() override;

  void focusMainButton() { top_->focusMainButton(); }

 protected:
  bool event(QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void build();
  QWidget* makeLinks();
  void render();
  void presentInstallOffer();
  void presentPortConflict();

  DesktopController& controller_;
  WindowOpener& windows_;
  TopCard* top_;
  ProgressCard* progress_;
  ErrorCard* error_;
  TextLabel* notice_;
  bool installOffered_ = false;
  std::string shownConflict_;
  QPointer<QWidget> portSheet_;
  RenderScheduler scheduler_;
};

}  // namespace tarnwick
