#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <functional>
#include <optional>

namespace tarnwick {

/// Tells whether the session has somebody who shows tray items on behalf of programs on the bus.
/// The toolkit looks for that once in a process and believes what it saw. Every question is
/// asynchronous. Interface thread.
class TrayHostWatch final : public QObject {
  Q_OBJECT

 public:
  /// `changed` is called from the event loop when it is known whether there is a host, and whenever
  /// one comes or goes. As long as somebody has to be waited for, nothing is known.
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
  std::optional<bool> there_;
};

}  // namespace tarnwick
