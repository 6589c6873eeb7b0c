#include "ui/common/symbol_view.h"

namespace tarnwick {

SymbolView::SymbolView(Symbol symbol, ColorRole color, QWidget* parent)
    : QWidget(parent), symbol_(symbol), color_(color) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolView::setSymbol(Symbol symbol, ColorRole color) {
  if (symbol == symbol_ && color == color_) return;
  symbol_ = symbol;
  color_ = color;
  update();
}

QSize SymbolView::sizeHint() const {
  const int side = fontMetrics().height();
  return {side, side};
}

void SymbolView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  drawSymbol(painter, symbol_, rect(), colorFor(color_, palette()));
}

}  // namespace tarnwick
