#include <arpa/inet.h>
#include <chrono>
#include <fcntl.h>
#include <fmt/format.h>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <netinet/in.h>
#include <nlohmann/json.hpp>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "practice/console.h"
#include "practice/desktop/certificate.h"
#include "practice/desktop/settings.h"
#include "practice/desktop/site.h"

namespace {

using namespace tarnwick::practice;

/// Longer than a starter needs to write down our pid.
constexpr double kGraceSeconds = 5.0;

/// Ends the process when the state no longer names it: a server never outlives its container, even
/// when the tool that should have ended it was killed, or the folder was deleted.
void watch(const DesktopSettings& settings) {
  if (settings.faults.has(Fault::ContainerDies)) {
    waitFor(2.0);
    say("Practice desktop: ends as ordered.");
    ::_exit(1);
  }
  for (waitFor(kGraceSeconds);; waitFor(1.0)) {
    std::ifstream file(settings.stateFile);
    const auto state = nlohmann::json::parse(file, nullptr, false);
    const auto pid = nlohmann::json::json_pointer("/container/serverPid");
    if (state.is_discarded() || !state.contains(pid) || state[pid] != ::getpid()) ::_exit(0);
  }
}

/// 127.0.0.1 only. Without SO_REUSEPORT: two servers on one port must be an error.
bool bindLoopback(httplib::Server& server, int port) {
  server.set_socket_options([](auto socket) {
    const int on = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  });
  // A browser keeps several connections open on each port, and each holds a thread.
  server.new_task_queue = [] { return new httplib::ThreadPool(16); };
  return server.bind_to_port("127.0.0.1", port);
}

/// The kernel completes the connections, and nobody ever reads from them.
bool listenInSilence(int port) {
  const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int on = 1;
  ::setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return ::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
         ::listen(descriptor, SOMAXCONN) == 0;
}

int fail(std::string_view why) {
  say(fmt::format("Practice desktop: {}", why));
  return 1;
}

int beSilent(const DesktopSettings& settings) {
  if (!listenInSilence(settings.httpPort) || !listenInSilence(settings.httpsPort)) {
    return fail("a port is in use.");
  }
  while (true) ::pause();
}

int serve(const DesktopSettings& settings) {
  const bool makeNew = settings.faults.has(Fault::DesktopNewCertificate);
  const Certificate certificate = certificateIn(
      settings.volumeFolder, makeNew ? CertificateKeeping::MakeNew : CertificateKeeping::Keep);
  if (!certificate.certificate) return fail("no certificate could be made.");
  Site site(settings);
  httplib::Server plain;
  httplib::SSLServer secure(certificate.certificate.get(), certificate.key.get());
  if (!secure.is_valid()) return fail("its certificate is not usable.");
  site.install(plain);
  site.install(secure);
  if (!bindLoopback(plain, settings.httpPort) || !bindLoopback(secure, settings.httpsPort)) {
    return fail("a port is in use.");
  }
  say(fmt::format("Practice desktop: {} answers on 127.0.0.1, ports {} (http) and {} (https).",
                  settings.flavor, settings.httpPort, settings.httpsPort));
  if (settings.locked) {
    say("Practice desktop: no password is kept between starts; start the desktop again to sign "
        "in.");
  }
  std::thread second([&secure] { secure.listen_after_bind(); });
  plain.listen_after_bind();
  second.join();
  return 0;
}

}  // namespace

int main() {
  // The password is in our memory: no core file, and no reading of it by other processes.
  ::prctl(PR_SET_DUMPABLE, 0);
  ::signal(SIGPIPE, SIG_IGN);
  try {
    DesktopSettings settings = readDesktopSettings(
        std::string{std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()});
    const int null = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ::dup2(null, STDIN_FILENO);
    say("Practice desktop: starting. This is not a real Linux.");
    std::thread(watch, std::cref(settings)).detach();
    waitFor(settings.startDelay);
    const int status =
        settings.faults.has(Fault::DesktopNeverAnswers) ? beSilent(settings) : serve(settings);
    // The watching thread still looks at the settings; end without taking them down.
    ::_exit(status);
  } catch (const std::exception& error) {
    return fail(error.what());
  }
}
