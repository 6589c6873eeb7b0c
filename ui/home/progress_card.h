#pragma once

#include <QVBoxLayout>
#include <QWidget>
#include <vector>

#include "core/controller/desktop_controller.h"
#include "ui/common/buttons.h"
#include "ui/common/elided_label.h"
#include "ui/common/progress_bar.h"
#include "ui/common/text_label.h"
#include "ui/home/checklist_row.h"

namespace tarnwick {

/// The checklist of a run; while it is under way also its progress and its latest output.
class ProgressCard final : public QWidget {
 public:
  explicit ProgressCard(DesktopController& controller, QWidget* parent = nullptr);
  void render();
  [[nodiscard]] bool cancelHasFocus() const { return cancel_->hasFocus(); }
  void focusCancel() { cancel_->setFocus(Qt::OtherFocusReason); }

 private:
  void renderChecklist();
  void renderTail();

  DesktopController& controller_;
  QVBoxLayout* checklist_;
  std::vector<ChecklistRow*> rows_;
  QWidget* run_;  ///< what is shown only while busy
  ProgressBar* bar_;
  TextLabel* text_;
  QWidget* tail_;
  std::vector<ElidedLabel*> lines_;
  PlainButton* cancel_;
};

}  // namespace tarnwick
