#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <functional>

namespace tarnwick {

/// Tells whether the session has somebody who shows tray items on behalf of programs on the bus.
/// The toolkit looks for that once in a process and believes what it saw. Every question is
/// asynchronous. Interface thread.
class TrayHostWatch final : public QObject {
  Q_OBJECT

 public:
  /// `changed` is called from the event loop when a host comes or goes; at first there is none.
  explicit TrayHostWatch(std::function<void(bool there)> changed,
                         const QDBusConnection& bus = QDBusConnection::sessionBus());

 private slots:
  void ask();

 private:
  void tell(bool there);

  std::function<void(bool)> changed_;
  QDBusConnection bus_;
  QDBusServiceWatcher owner_;
  unsigned question_ = 0;
  bool there_ = false;
};

}  // namespace tarnwick
