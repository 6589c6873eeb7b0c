#pragma once

#include <QPainter>
#include <QWidget>

#include "ui/common/theme.h"

namespace tarnwick {

/// A hairline across the width between two parts of a window.
class Separator final : public QWidget {
 public:
  Separator() { setFixedHeight(1); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter(this).fillRect(rect(), colorFor(ColorRole::track, palette()));
  }
};

}  // namespace tarnwick
