#include "platform/qt/keychain_watch.h"

#include <chrono>
#include <utility>

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

// One that has just come up is often unlocked right after.
constexpr auto moment = 500ms;

}  // namespace

KeychainWatch::KeychainWatch(std::function<void()> mayBeOfUse, QDBusConnection bus)
    : arrivals_(QStringLiteral("org.freedesktop.secrets"), bus,
                QDBusServiceWatcher::WatchForRegistration) {
  moment_.setSingleShot(true);
  moment_.setInterval(moment);
  connect(&moment_, &QTimer::timeout, this, [call = std::move(mayBeOfUse)] { call(); });
  connect(&arrivals_, &QDBusServiceWatcher::serviceRegistered, this, &KeychainWatch::noteSign);
  bus.connect(QString(), QStringLiteral("/org/freedesktop/secrets"),
              QStringLiteral("org.freedesktop.Secret.Service"), QStringLiteral("CollectionChanged"),
              this, SLOT(noteSign()));
}

}  // namespace tarnwick
