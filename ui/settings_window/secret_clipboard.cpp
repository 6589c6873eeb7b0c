#include "ui/settings_window/secret_clipboard.h"

#include <QMimeData>
#include <QVariant>

namespace tarnwick {
namespace {

// The count of copies stays with the clipboard, which every object of this class shares.
constexpr const char* copiesProperty = "secretCopies";

}  // namespace

void SecretClipboard::copy(const QString& secret) {
  auto* data = new QMimeData;  // the clipboard takes it over
  data->setText(secret);
  data->setData(QStringLiteral("x-kde-passwordManagerHint"), QByteArrayLiteral("secret"));
  clipboard_.setMimeData(data);

  const int copy = clipboard_.property(copiesProperty).toInt() + 1;
  clipboard_.setProperty(copiesProperty, copy);
  mainThread_.postAfter(keptFor, [&clipboard = clipboard_, copy, secret] {
    const bool isLatest = clipboard.property(copiesProperty).toInt() == copy;
    if (isLatest && clipboard.text() == secret) clipboard.clear();
  });
}

}  // namespace tarnwick
