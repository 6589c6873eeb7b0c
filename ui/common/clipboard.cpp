#include "ui/common/clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QTimer>

namespace tarnwick {

void copyText(const QString& text) {
  QGuiApplication::clipboard()->setText(text);
}

void copySecret(const QString& secret, std::chrono::milliseconds life) {
  QClipboard* clipboard = QGuiApplication::clipboard();
  auto* content = new QMimeData;
  content->setText(secret);
  content->setData(QStringLiteral("x-kde-passwordManagerHint"), QByteArrayLiteral("secret"));
  clipboard->setMimeData(content);
  QTimer::singleShot(life, clipboard, [clipboard, secret] {
    if (clipboard->text() == secret) clipboard->clear();
  });
}

}  // namespace tarnwick
