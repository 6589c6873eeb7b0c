#include "ui/common/clipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace tarnwick {

void copyText(const QString& text) {
  QGuiApplication::clipboard()->setText(text);
}

}  // namespace tarnwick
