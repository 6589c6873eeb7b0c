#include "ui/desktop/keys_popover.h"

#include <QKeyEvent>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/dialogs/keys_help.h"

namespace tarnwick {

KeysPopover::KeysPopover(QWidget* parent) : QFrame(parent) {
  setFrameShape(QFrame::StyledPanel);
  setAutoFillBackground(true);
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(QStringLiteral("Keys and the web desktop"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addWidget(new KeysHelp);
  hide();
}

void KeysPopover::openUnder(QWidget& anchor) {
  anchor_ = &anchor;
  adjustSize();
  const QWidget& around = *parentWidget();
  QPoint corner = anchor.mapTo(&around, QPoint(anchor.width() - width(), anchor.height() + 4));
  corner.setX(std::clamp(corner.x(), 0, std::max(0, around.width() - width())));
  move(corner);
  show();
  raise();
  setFocus(Qt::PopupFocusReason);
}

void KeysPopover::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) {
    QFrame::keyPressEvent(event);
    return;
  }
  hide();
  if (anchor_) anchor_->setFocus(Qt::PopupFocusReason);
}

void KeysPopover::focusOutEvent(QFocusEvent* event) {
  QFrame::focusOutEvent(event);
  if (!anchor_ || !anchor_->hasFocus()) hide();
}

}  // namespace tarnwick
