#pragma once

#include <QFrame>

namespace tarnwick {

/// The keyboard help in a popover. Escape and a click elsewhere close it.
class KeysPopover final : public QFrame {
 public:
  explicit KeysPopover(QWidget* parent);

  /// Shows it under `anchor`, within the screen.
  void openUnder(QWidget& anchor);
};

}  // namespace tarnwick
