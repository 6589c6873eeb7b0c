#pragma once

#include <QWidget>

#include "ui/common/symbols.h"

namespace tarnwick {

/// A symbol as high as a line of text. It is decoration: what it means is said in words beside it.
class SymbolView final : public QWidget {
 public:
  SymbolView(Symbol symbol, ColorRole color, QWidget* parent = nullptr);
  void setSymbol(Symbol symbol, ColorRole color);
  [[nodiscard]] Symbol symbol() const { return symbol_; }
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Symbol symbol_;
  ColorRole color_;
};

}  // namespace tarnwick
