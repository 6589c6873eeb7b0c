#include "ui/desktop/keys_popover.h"

#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/dialogs/keys_help.h"

namespace tarnwick {

KeysPopover::KeysPopover(QWidget* parent) : QFrame(parent, Qt::Popup) {
  // The press on the button that opened it only closes it, instead of opening it once more.
  setAttribute(Qt::WA_NoMouseReplay);
  setFrameShape(QFrame::StyledPanel);
  setAccessibleName(QStringLiteral("Keys and the web desktop"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addWidget(new KeysHelp);
}

void KeysPopover::openUnder(QWidget& anchor) {
  adjustSize();
  const QPoint below = anchor.mapToGlobal(QPoint(anchor.width() - width(), anchor.height() + 4));
  QRect area(below, size());
  if (const QScreen* screen = anchor.screen()) {
    const QRect room = screen->availableGeometry();
    area.moveLeft(std::clamp(area.left(), room.left(),
                             std::max(room.left(), room.right() - area.width() + 1)));
  }
  move(area.topLeft());
  show();
}

}  // namespace tarnwick
