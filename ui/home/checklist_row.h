#pragma once

#include <QStackedLayout>
#include <QWidget>
#include <optional>

#include "core/controller/launch_state.h"
#include "ui/common/spinner.h"
#include "ui/common/symbol_view.h"
#include "ui/common/text_label.h"

namespace tarnwick {

/// One step of a launch: its state as a picture, its title, and both in words for assistive tools.
class ChecklistRow final : public QWidget {
 public:
  explicit ChecklistRow(QWidget* parent = nullptr);
  void show(const Stage& stage);

 private:
  std::optional<Stage> shown_;
  QStackedLayout* pictures_;
  SymbolView* symbol_;
  Spinner* spinner_;
  TextLabel* title_;
};

}  // namespace tarnwick
