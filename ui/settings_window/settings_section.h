#pragma once

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
  bool event(QEvent* event) override;

 private:
  Card* card_;
  QVBoxLayout* rows_;
};

}  // namespace tarnwick
