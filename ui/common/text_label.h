#pragma once

#include <QLabel>

#include "ui/common/theme.h"

namespace tarnwick {

/// A text that wraps, in the font and colour of its role; follows the user's theme.
class TextLabel final : public QLabel {
 public:
  explicit TextLabel(FontRole font, ColorRole color = ColorRole::primary,
                     QWidget* parent = nullptr);
  TextLabel(const QString& text, FontRole font, ColorRole color = ColorRole::primary,
            QWidget* parent = nullptr);

  void setColorRole(ColorRole color);
  /// Semibold, whatever the role says.
  void setSemibold();

 protected:
  bool event(QEvent* event) override;

 private:
  void applyTheme();

  FontRole fontRole_;
  ColorRole colorRole_;
  bool semibold_ = false;
};

}  // namespace tarnwick
