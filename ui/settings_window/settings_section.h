#pragma once

#include <QCheckBox>
#include <QVBoxLayout>
#include <QWidget>

#include "ui/common/card.h"
#include "ui/common/text_label.h"

namespace tarnwick {

/// One titled group of the settings.
class SettingsSection : public QWidget {
 public:
  explicit SettingsSection(const QString& title);

  /// Shows the present values. Cheap, and the same again when nothing has changed.
  virtual void render() {}

 protected:
  /// The rows below the title, in a card.
  [[nodiscard]] QVBoxLayout& rows() { return *rows_; }
  /// Adds a row of small dimmed text.
  TextLabel* addCaption(const QString& text = QString());
  /// Ticks the box or not, without telling of it: what a box tells is what somebody switched.
  static void showChecked(QCheckBox& box, bool on);
  bool event(QEvent* event) override;

 private:
  Card* card_;
  QVBoxLayout* rows_;
};

}  // namespace tarnwick
