#include "ui/settings_window/page_scroll.h"

#include <QApplication>
#include <QEvent>
#include <QScrollBar>

namespace tarnwick {

PageScroll::PageScroll(QWidget* page) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);
  setWidget(page);
  // The page lies on the window's own background.
  viewport()->setAutoFillBackground(false);
  page->setAutoFillBackground(false);
}

QSize PageScroll::minimumSizeHint() const {
  const int bar = verticalScrollBar()->sizeHint().width();
  return {widget()->minimumSizeHint().width() + bar, 0};
}

QSize PageScroll::sizeHint() const {
  return minimumSizeHint();
}

bool PageScroll::eventFilter(QObject* watched, QEvent* event) {
  const bool filtered = QScrollArea::eventFilter(watched, event);
  if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
  return filtered;
}

}  // namespace tarnwick
