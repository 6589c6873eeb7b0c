#include "ui/main_window/announcements.h"

#include <utility>

namespace tarnwick {
namespace {

QString textOf(const std::optional<std::string>& text) {
  return text ? QString::fromStdString(*text) : QString();
}

QString inWords(const QString& status) {
  return QStringLiteral("Tarnwick: ") + status;
}

}  // namespace

Announcements::Announcements(DesktopController& controller, Announcer& announcer)
    : controller_(controller), announcer_(announcer), known_(present()) {
  announcer_.announce(inWords(known_.status));
}

Announcements::Known Announcements::present() const {
  return {textOf(controller_.errorSummary.get()), textOf(controller_.notice.get()),
          QString::fromStdString(controller_.statusText())};
}

void Announcements::render() {
  Known now = present();
  // One sentence a turn: why something ended says more than that it ended.
  if (now.error != known_.error && !now.error.isEmpty()) {
    announcer_.announce(now.error);
  } else if (now.notice != known_.notice && !now.notice.isEmpty()) {
    announcer_.announce(now.notice);
  } else if (now.status != known_.status) {
    announcer_.announce(inWords(now.status));
  }
  known_ = std::move(now);
}

}  // namespace tarnwick
