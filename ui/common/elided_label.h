#pragma once

#include <QWidget>

#include "ui/common/theme.h"

namespace tarnwick {

/// One line of text, shortened in the middle when it does not fit. Assistive tools read it whole.
class ElidedLabel final : public QWidget {
 public:
  explicit ElidedLabel(FontRole font, ColorRole color = ColorRole::primary,
                       QWidget* parent = nullptr);

  void setText(const QString& text);
  [[nodiscard]] const QString& text() const { return text_; }
  /// What is painted at the present width.
  [[nodiscard]] QString shownText() const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  FontRole fontRole_;
  ColorRole colorRole_;
  QString text_;
};

}  // namespace tarnwick
