#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QPointer>

#include "core/controller/desktop_notifications.h"

class QDBusPendingCallWatcher;

namespace tarnwick {

/// The desktop's notification service on the session bus. Every call to it is asynchronous.
class FreedesktopNotifications final : public QObject, public DesktopNotifications {
  Q_OBJECT

 public:
  explicit FreedesktopNotifications(const QDBusConnection& bus = QDBusConnection::sessionBus());

  void show(const std::string& title, const std::string& text, Clicked clicked) override;
  void withdraw() override;

 private slots:
  void noteToken(uint id, const QString& token);
  void actionInvoked(uint id, const QString& action);
  void closed(uint id, uint reason);

 private:
  void notify(const QString& title, const QString& body);
  void take(QDBusPendingCallWatcher* answer);

  QDBusConnection bus_;
  Clicked clicked_;
  std::string token_;
  /// Of what is on show; 0 for nothing.
  uint shown_ = 0;
  /// The newest wish; answers to older ones are not heeded.
  unsigned wish_ = 0;
  bool wanted_ = false;
};

}  // namespace tarnwick
