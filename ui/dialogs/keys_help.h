#pragma once

#include <QWidget>

namespace tarnwick {

/// Advice about keyboard, clipboard and sound in the web desktop. Always 420 wide, and as high as
/// its text needs in the present font.
class KeysHelp final : public QWidget {
 public:
  static constexpr int exactWidth = 420;

  explicit KeysHelp(QWidget* parent = nullptr);

 protected:
  bool event(QEvent* event) override;
};

}  // namespace tarnwick
