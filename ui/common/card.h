#pragma once

#include <QWidget>

#include "ui/common/theme.h"

namespace tarnwick {

/// A rounded rectangle that groups what belongs together.
class Card final : public QWidget {
 public:
  /// `radius` is in device-independent pixels, `fill` ColorRole::card or ColorRole::warningFill.
  Card(double radius, ColorRole fill, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double radius_;
  ColorRole fill_;
};

}  // namespace tarnwick
