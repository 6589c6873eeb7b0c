#include "platform/desktop_sleep_inhibitor.h"

#include <gio/gunixfdlist.h>
#include <unistd.h>

#include "platform/glib_call.h"
#include "platform/session_bus.h"

namespace tarnwick {
namespace {

constexpr const char* applicationName = "Tarnwick";

struct VariantUnref {
  void operator()(GVariant* value) const { g_variant_unref(value); }
};
using Variant = std::unique_ptr<GVariant, VariantUnref>;

/// Where a promise is asked for. The arguments are made anew for each call.
struct Keeper {
  const char* name;
  const char* path;
  const char* interface;
};

constexpr Keeper loginManager = {"org.freedesktop.login1", "/org/freedesktop/login1",
                                 "org.freedesktop.login1.Manager"};
constexpr Keeper sessionManager = {"org.gnome.SessionManager", "/org/gnome/SessionManager",
                                   "org.gnome.SessionManager"};
constexpr Keeper powerManager = {"org.freedesktop.PowerManagement.Inhibit",
                                 "/org/freedesktop/PowerManagement/Inhibit",
                                 "org.freedesktop.PowerManagement.Inhibit"};

std::string addressOf(GBusType bus) {
  // Without a name the library would start a bus of its own.
  if (bus == G_BUS_TYPE_SESSION) return sessionBusAddress();
  gchar* address = g_dbus_address_get_for_bus_sync(bus, nullptr, nullptr);
  std::string result = address != nullptr ? address : "";
  g_free(address);
  return result;
}

/// A connection of our own and one request over it, within a common limit.
class Request {
 public:
  Request(GBusType bus, std::chrono::milliseconds limit) : call_(limit) {
    const std::string address = addressOf(bus);
    if (address.empty()) return;
    constexpr auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    g_dbus_connection_new_for_address(address.c_str(), flags, nullptr, call_.cancellable(),
                                      &GlibCall::arrived, &call_);
    bus_.reset(g_dbus_connection_new_for_address_finish(call_.wait().get(), nullptr));
  }

  /// Whether the keeper has promised; `descriptors` then holds what it handed over.
  bool inhibit(const Keeper& keeper, GVariant* arguments, const char* answerType) {
    const Variant owned(g_variant_ref_sink(arguments));
    if (!bus_) return false;
    g_dbus_connection_call_with_unix_fd_list(bus_.get(), keeper.name, keeper.path, keeper.interface,
                                             "Inhibit", owned.get(), G_VARIANT_TYPE(answerType),
                                             G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
                                             call_.cancellable(), &GlibCall::arrived, &call_);
    GUnixFDList* list = nullptr;
    const Variant answer(g_dbus_connection_call_with_unix_fd_list_finish(
        bus_.get(), &list, call_.wait().get(), nullptr));
    descriptors_.reset(list);
    return answer != nullptr;
  }

  /// The first descriptor that was handed over; -1 without one.
  [[nodiscard]] int takeDescriptor() const {
    if (!descriptors_ || g_unix_fd_list_get_length(descriptors_.get()) == 0) return -1;
    return g_unix_fd_list_get(descriptors_.get(), 0, nullptr);
  }

  /// Keeps the connection open for as long as the hold lives.
  SleepInhibitor::Hold takeConnection() {
    const auto close = [](GDBusConnection* bus) {
      g_dbus_connection_close(bus, nullptr, nullptr, nullptr);
      g_object_unref(bus);
    };
    return {bus_.release(), close};
  }

 private:
  GlibCall call_;
  GlibPtr<GDBusConnection> bus_;
  GlibPtr<GUnixFDList> descriptors_;
};

SleepInhibitor::Hold askLoginManager(const std::string& reason, std::chrono::milliseconds limit) {
  Request request(G_BUS_TYPE_SYSTEM, limit);
  GVariant* arguments =
      g_variant_new("(ssss)", "sleep:idle", applicationName, reason.c_str(), "block");
  if (!request.inhibit(loginManager, arguments, "(h)")) return nullptr;
  const int descriptor = request.takeDescriptor();
  if (descriptor < 0) return nullptr;
  return {new int(descriptor), [](const int* held) {
            ::close(*held);
            delete held;
          }};
}

SleepInhibitor::Hold askSessionManager(const std::string& reason, std::chrono::milliseconds limit) {
  constexpr guint32 againstSuspending = 4;
  Request request(G_BUS_TYPE_SESSION, limit);
  GVariant* arguments =
      g_variant_new("(susu)", applicationName, 0U, reason.c_str(), againstSuspending);
  return request.inhibit(sessionManager, arguments, "(u)") ? request.takeConnection() : nullptr;
}

SleepInhibitor::Hold askPowerManager(const std::string& reason, std::chrono::milliseconds limit) {
  Request request(G_BUS_TYPE_SESSION, limit);
  GVariant* arguments = g_variant_new("(ss)", applicationName, reason.c_str());
  return request.inhibit(powerManager, arguments, "(u)") ? request.takeConnection() : nullptr;
}

}  // namespace

SleepInhibitor::Hold DesktopSleepInhibitor::hold(const std::string& reason) {
  if (Hold held = askLoginManager(reason, limit_)) return held;
  if (Hold held = askSessionManager(reason, limit_)) return held;
  return askPowerManager(reason, limit_);
}

}  // namespace tarnwick
