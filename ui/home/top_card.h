#pragma once

#include <QWidget>

#include "core/controller/desktop_controller.h"
#include "ui/common/buttons.h"
#include "ui/common/text_label.h"
#include "ui/home/flavor_picker.h"

namespace tarnwick {

/// The logo, the flavor, and the buttons that start and stop.
class TopCard final : public QWidget {
 public:
  explicit TopCard(DesktopController& controller, QWidget* parent = nullptr);
  void render();
  /// The keyboard is at a control of the card; a launch disables them all.
  [[nodiscard]] bool hasKeyboard() const { return main_->hasFocus() || picker_->hasFocus(); }
  /// Where the keyboard begins.
  void focusMainButton() { main_->setFocus(Qt::OtherFocusReason); }

 protected:
  bool event(QEvent* event) override;

 private:
  void build();
  QWidget* makePicker();
  void fitPicker();

  DesktopController& controller_;
  FlavorPicker* picker_;
  QWidget* pickerRow_ = nullptr;
  ProminentButton* main_;
  PlainButton* stop_;
  TextLabel* firstRun_;
  TextLabel* installHint_;
};

}  // namespace tarnwick
