#include "platform/qt/freedesktop_notifications.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>
#include <utility>

namespace tarnwick {
namespace {

constexpr int limitMilliseconds = 5000;
constexpr auto service = "org.freedesktop.Notifications";
constexpr auto path = "/org/freedesktop/Notifications";

QDBusMessage callTo(const char* method) {
  return QDBusMessage::createMethodCall(QLatin1String(service), QLatin1String(path),
                                        QLatin1String(service), QLatin1String(method));
}

}  // namespace

FreedesktopNotifications::FreedesktopNotifications(const QDBusConnection& bus) : bus_(bus) {
  // From whichever service holds the name at the time. To name it here would ask the bus for its
  // owner, and wait for the answer.
  const auto listen = [this](const char* signal, const char* slot) {
    bus_.connect(QString(), QLatin1String(path), QLatin1String(service), QLatin1String(signal),
                 this, slot);
  };
  listen("ActivationToken", SLOT(noteToken(uint, QString)));
  listen("ActionInvoked", SLOT(actionInvoked(uint, QString)));
  listen("NotificationClosed", SLOT(closed(uint, uint)));
}

void FreedesktopNotifications::show(const std::string& title, const std::string& text,
                                    Clicked clicked) {
  if (!bus_.isConnected()) return;
  clicked_ = std::move(clicked);
  token_.clear();
  wanted_ = true;
  const unsigned wish = ++wish_;
  // Bodies are markup for those services that say so, and plain text for the others.
  auto* answer = new QDBusPendingCallWatcher(
      bus_.asyncCall(callTo("GetCapabilities"), limitMilliseconds), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this,
          [this, answer, wish, title = QString::fromStdString(title),
           body = QString::fromStdString(text)] {
            answer->deleteLater();
            const QDBusPendingReply<QStringList> capabilities = *answer;
            if (capabilities.isError() || wish != wish_) return;
            const bool isMarkup = capabilities.value().contains(QStringLiteral("body-markup"));
            notify(title, isMarkup ? body.toHtmlEscaped() : body);
          });
}

void FreedesktopNotifications::notify(const QString& title, const QString& body) {
  QDBusMessage call = callTo("Notify");
  const QString name = QStringLiteral("Tarnwick");
  const QString icon = QStringLiteral("tarnwick");
  // The action of this name is a click on the message itself.
  const QStringList actions = {QStringLiteral("default"), QStringLiteral("Open Tarnwick")};
  const QVariantMap hints = {{QStringLiteral("desktop-entry"), icon}};
  constexpr int asLongAsUsual = -1;
  call.setArguments({name, shown_, icon, title, body, actions, hints, asLongAsUsual});
  take(new QDBusPendingCallWatcher(bus_.asyncCall(call, limitMilliseconds), this));
}

void FreedesktopNotifications::take(QDBusPendingCallWatcher* answer) {
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
    answer->deleteLater();
    const QDBusPendingReply<uint> id = *answer;
    if (id.isError()) return;
    shown_ = id.value();
    // Given up before it had a number.
    if (!wanted_) withdraw();
  });
}

void FreedesktopNotifications::withdraw() {
  wanted_ = false;
  ++wish_;
  clicked_ = nullptr;
  if (shown_ == 0) return;
  QDBusMessage call = callTo("CloseNotification");
  call.setArguments({std::exchange(shown_, 0U)});
  bus_.call(call, QDBus::NoBlock);
}

void FreedesktopNotifications::noteToken(uint id, const QString& token) {
  if (id == shown_) token_ = token.toStdString();
}

void FreedesktopNotifications::actionInvoked(uint id, const QString& /*action*/) {
  if (id != shown_ || shown_ == 0 || !clicked_) return;
  // What is called may show or withdraw.
  const Clicked clicked = clicked_;
  clicked(std::exchange(token_, {}));
}

void FreedesktopNotifications::closed(uint id, uint /*reason*/) {
  if (id == shown_) shown_ = 0;
}

}  // namespace tarnwick
