#pragma once

#include <QFrame>
#include <QPointer>

namespace tarnwick {

/// The keyboard help over the desktop. Escape and a click elsewhere close it. It lies inside the
/// window: a pop-up window of its own is hidden from assistive tools.
class KeysPopover final : public QFrame {
 public:
  explicit KeysPopover(QWidget* parent);

  /// Shows it under `anchor`, a widget of the same window, and takes the keyboard. While it is open
  /// a press on `anchor` leaves it open, for `anchor` to close it.
  void openUnder(QWidget& anchor);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  QPointer<QWidget> anchor_;
};

}  // namespace tarnwick
