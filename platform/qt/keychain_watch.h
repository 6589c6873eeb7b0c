#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>
#include <functional>

namespace tarnwick {

/// Tells when the secret store may have come up or been unlocked, by what it says on the bus.
/// Interface thread.
class KeychainWatch final : public QObject {
  Q_OBJECT

 public:
  /// `mayBeOfUse` is called from the event loop, a moment after the last sign.
  explicit KeychainWatch(std::function<void()> mayBeOfUse,
                         QDBusConnection bus = QDBusConnection::sessionBus());

 private slots:
  void noteSign() { moment_.start(); }

 private:
  QDBusServiceWatcher arrivals_;
  QTimer moment_;
};

}  // namespace tarnwick
