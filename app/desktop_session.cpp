#include "app/desktop_session.h"

#include <QGuiApplication>
#include <QWindow>
#include <utility>

namespace tarnwick {
namespace {

bool isInFront() {
  return QGuiApplication::focusWindow() != nullptr;
}

}  // namespace

DesktopSession::DesktopSession(Backend& backend, WindowOpener& windows,
                               DesktopNotifications::Clicked openMainWindow)
    : keychain_([&settings = backend.controller().settings] { settings.retryKeychain(); }) {
  awake_.emplace(backend.controller(), inhibitor_, backend.workers(), backend.mainThread());
  notices_.emplace(backend.controller(), notifications_, std::move(openMainWindow), &isInFront);
  QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &notifications_, [this] {
    if (notices_) notices_->attentionChanged();
  });
  tray_.emplace(backend.controller(), windows, &hasWindowOnShow);
  trayHosts_.emplace([this](bool there) { tray_->hostChanged(there); });
}

void DesktopSession::leave() {
  trayHosts_.reset();
  tray_.reset();
  notices_.reset();
  notifications_.withdraw();
  awake_.reset();
}

}  // namespace tarnwick
