#include "ui/dialogs/keys_help.h"

#include <QEvent>
#include <QVBoxLayout>

#include "ui/common/text_label.h"
#include "ui/dialogs/fixed_width.h"

namespace tarnwick {
namespace {

constexpr const char* advice[] = {
    "• Click inside the desktop first so it receives the keyboard.",
    "• Mac Command shortcuts (such as Command-C) are handled by macOS and this app first, so they "
    "may not reach Linux. Inside Linux apps use Ctrl-C and Ctrl-V (Ctrl-Shift-C and Ctrl-Shift-V "
    "in terminals).",
    "• The desktop is streamed by the Selkies web client, which needs the secure https page this "
    "app loads (port 3001). It documents clipboard sync, file transfer and audio.",
    "• Whether sound, clipboard sharing and window resizing actually work depends on the web "
    "desktop and the browser engine used here. They have not been tested.",
    "• The microphone is not enabled.",
    // Must name every shortcut that the main window keeps while the desktop is shown.
    "• F11 switches full screen on and off, also while the desktop is shown. Every other key goes "
    "to the desktop.",
};

}  // namespace

KeysHelp::KeysHelp(QWidget* parent) : QWidget(parent) {
  setAccessibleName(QStringLiteral("Keys and the web desktop"));
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(16, 16, 16, 16);
  rows->setSpacing(8);
  rows->addWidget(new TextLabel(QStringLiteral("Keys and the web desktop"), FontRole::headline));
  for (const char* text : advice) {
    rows->addWidget(new TextLabel(QString::fromUtf8(text), FontRole::callout));
  }
  fitHeight(*this, exactWidth);
}

bool KeysHelp::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  if (event->type() == QEvent::LayoutRequest) fitHeight(*this, exactWidth);
  return handled;
}

}  // namespace tarnwick
