#include "tests/platform/private_bus.h"

#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <gio/gio.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "tests/platform/small_files.h"

namespace tarnwick {
namespace {

bool waitFor(const std::function<bool()>& holds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!holds()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

bool accepts(const std::string& path) {
  const int handle = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  const bool connected =
      ::connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  ::close(handle);
  return connected;
}

GVariant* callBus(const char* name, const char* path, const char* interface, const char* method,
                  GVariant* arguments) {
  GDBusConnection* bus = g_dbus_connection_new_for_address_sync(
      std::getenv("DBUS_SESSION_BUS_ADDRESS"),
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr);
  if (bus == nullptr) return nullptr;
  GVariant* answer =
      g_dbus_connection_call_sync(bus, name, path, interface, method, arguments, nullptr,
                                  G_DBUS_CALL_FLAGS_NONE, 5000, nullptr, nullptr);
  g_object_unref(bus);
  return answer;
}

bool isOwned(const char* name) {
  GVariant* answer = callBus("org.freedesktop.DBus", "/org/freedesktop/DBus",
                             "org.freedesktop.DBus", "NameHasOwner", g_variant_new("(s)", name));
  gboolean owned = FALSE;
  if (answer != nullptr) {
    g_variant_get(answer, "(b)", &owned);
    g_variant_unref(answer);
  }
  return owned != FALSE;
}

constexpr const char* busRules = R"(<!DOCTYPE busconfig PUBLIC
  "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
  "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:path=FOLDER/bus</listen>
<policy context="default"><allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/></policy></busconfig>)";

constexpr const char* secrets = "org.freedesktop.secrets";

}  // namespace

Companion::Companion(std::vector<std::string> words, const std::string& input,
                     const std::string& folder) {
  int pipe[2];
  EXPECT_EQ(::pipe2(pipe, O_CLOEXEC), 0);
  pid_ = ::fork();
  if (pid_ == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::dup2(pipe[0], 0);
    const int log = ::open((folder + "/log").c_str(), O_CREAT | O_APPEND | O_WRONLY, 0600);
    ::dup2(log, 1);
    ::dup2(log, 2);
    for (const char* name : {"HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME"}) {
      ::setenv(name, folder.c_str(), 1);
    }
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::execvp(arguments[0], arguments.data());
    ::_exit(127);
  }
  ::close(pipe[0]);
  EXPECT_EQ(::write(pipe[1], input.data(), input.size()), static_cast<ssize_t>(input.size()));
  ::close(pipe[1]);
}

Companion::~Companion() {
  ::kill(pid_, SIGKILL);
  ::waitpid(pid_, nullptr, 0);
}

void Companion::send(int signal) const {
  ::kill(pid_, signal);
}

PrivateBus::PrivateBus() {
  std::string rules = busRules;
  rules.replace(rules.find("FOLDER"), 6, folder_.path());
  writeText(folder_ / "rules", rules);
  ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + (folder_ / "bus")).c_str(), 1);
  bus_.emplace(std::vector<std::string>{"dbus-daemon", "--config-file=" + (folder_ / "rules"),
                                        "--nofork", "--nopidfile"},
               "", folder_.path());
  if (!waitFor([this] { return accepts(folder_ / "bus"); })) bus_.reset();
}

PrivateBus::~PrivateBus() {
  ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
}

bool PrivateBus::startKeyring(const std::optional<std::string>& password) {
  std::vector<std::string> words = {"gnome-keyring-daemon", "--foreground", "--components=secrets",
                                    "--control-directory=" + (folder_ / "control")};
  if (password) words.emplace_back("--unlock");
  keyring_.emplace(words, password.value_or(""), folder_.path());
  return waitFor([] { return isOwned(secrets); });
}

void PrivateBus::lockKeyring() const {
  const char* collection = "/org/freedesktop/secrets/collection/login";
  GVariantBuilder paths;
  g_variant_builder_init(&paths, G_VARIANT_TYPE("ao"));
  g_variant_builder_add(&paths, "o", collection);
  GVariant* answer = callBus(secrets, "/org/freedesktop/secrets", "org.freedesktop.Secret.Service",
                             "Lock", g_variant_new("(ao)", &paths));
  ASSERT_NE(answer, nullptr);
  g_variant_unref(answer);
}

}  // namespace tarnwick
