#pragma once

#include <QWidget>

#include "core/controller/desktop_controller.h"
#include "ui/common/buttons.h"
#include "ui/common/text_label.h"
#include "ui/home/log_details.h"

namespace tarnwick {

/// Why the last run failed, in one sentence, and what the tools said behind "Show details".
class ErrorCard final : public QWidget {
 public:
  explicit ErrorCard(DesktopController& controller, QWidget* parent = nullptr);
  void render();

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  DesktopController& controller_;
  TextLabel* summary_;
  DisclosureButton* showDetails_;
  LogDetails* details_;
};

}  // namespace tarnwick
