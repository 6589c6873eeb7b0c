#include "platform/qt/tray_host_watch.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <utility>

namespace tarnwick {
namespace {

constexpr int limitMilliseconds = 5000;
constexpr auto service = "org.kde.StatusNotifierWatcher";
constexpr auto path = "/StatusNotifierWatcher";

}  // namespace

TrayHostWatch::TrayHostWatch(std::function<void(bool)> changed, const QDBusConnection& bus)
    : changed_(std::move(changed)),
      bus_(bus),
      owner_(QLatin1String(service), bus, QDBusServiceWatcher::WatchForOwnerChange) {
  connect(&owner_, &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString&, const QString&, const QString& newOwner) {
            if (!newOwner.isEmpty()) return ask();
            ++question_;
            tell(false);
          });
  // The keeper of the items may live on while who draws them comes and goes.
  for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
    bus_.connect(QString(), QLatin1String(path), QLatin1String(service), QLatin1String(signal),
                 this, SLOT(ask()));
  }
  if (bus_.isConnected()) {
    ask();
  } else {
    // Nobody would ever answer.
    QMetaObject::invokeMethod(
        this, [this] { tell(false); }, Qt::QueuedConnection);
  }
}

void TrayHostWatch::ask() {
  QDBusMessage call = QDBusMessage::createMethodCall(
      QLatin1String(service), QLatin1String(path),
      QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
  call.setArguments({QLatin1String(service), QStringLiteral("IsStatusNotifierHostRegistered")});
  call.setAutoStartService(false);
  auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(call, limitMilliseconds), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, question = ++question_] {
    answer->deleteLater();
    if (question != question_) return;
    const QDBusPendingReply<QDBusVariant> there = *answer;
    const QDBusError::ErrorType error = there.error().type();
    if (error == QDBusError::NoReply || error == QDBusError::Timeout) return;
    tell(!there.isError() && there.value().variant().toBool());
  });
}

void TrayHostWatch::tell(bool there) {
  if (std::exchange(there_, there) != there) changed_(there);
}

}  // namespace tarnwick
