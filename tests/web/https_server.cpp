#include "tests/web/https_server.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <openssl/evp.h>
#include <openssl/x509.h>
#include <stdexcept>
#include <thread>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wsign-conversion"
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wshadow"
#include <httplib.h>
#pragma GCC diagnostic pop

namespace tarnwick {
namespace {

constexpr long dayInSeconds = 86400;

}  // namespace

Identity::Identity() {
  EVP_PKEY* key = EVP_EC_gen("P-256");
  X509* certificate = X509_new();
  key_ = std::shared_ptr<EVP_PKEY>(key, EVP_PKEY_free);
  certificate_ = std::shared_ptr<X509>(certificate, X509_free);
  X509_set_version(certificate, 2);
  static std::atomic<int> serial{1};
  ASN1_INTEGER_set(X509_get_serialNumber(certificate), serial++);
  X509_gmtime_adj(X509_getm_notBefore(certificate), -dayInSeconds);
  X509_gmtime_adj(X509_getm_notAfter(certificate), dayInSeconds);
  X509_set_pubkey(certificate, key);
  X509_NAME* name = X509_get_subject_name(certificate);
  const std::string subject = "somebody";
  X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                             reinterpret_cast<const unsigned char*>(subject.c_str()), -1, -1, 0);
  X509_set_issuer_name(certificate, name);
  if (X509_sign(certificate, key, EVP_sha256()) == 0) throw std::runtime_error("no certificate");
}

struct HttpsServer::Running {
  Running(X509* certificate, EVP_PKEY* key) : server(certificate, key) {}

  httplib::SSLServer server;
  std::atomic<bool> stopping{false};
  std::thread thread;
};

HttpsServer::HttpsServer(const Identity& identity, Handler handler, int port)
    : running_(std::make_unique<Running>(static_cast<X509*>(identity.certificate_.get()),
                                         static_cast<EVP_PKEY*>(identity.key_.get()))) {
  httplib::SSLServer& server = running_->server;
  // The engine opens connections that it does not use; the end of the server waits for these.
  server.set_keep_alive_timeout(1);
  server.set_read_timeout(1);
  server.set_tcp_nodelay(true);
  server.Get(".*", [this, handler = std::move(handler)](const httplib::Request& request,
                                                        httplib::Response& response) {
    const Seen seen{request.target, request.get_header_value("Authorization")};
    {
      const std::lock_guard lock(mutex_);
      seen_.push_back(seen);
    }
    const Answer answer = handler(seen);
    response.status = answer.status;
    for (const auto& [name, value] : answer.fields) response.headers.emplace(name, value);
    const auto waitForTheEnd = [this] {
      while (!running_->stopping) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    };
    if (answer.pace == Pace::neverAnswers) waitForTheEnd();
    if (answer.pace != Pace::stallsHalfway) {
      response.set_content(answer.body, answer.type);
      return;
    }
    response.set_content_provider(2 * answer.body.size(), answer.type,
                                  [waitForTheEnd, body = answer.body](
                                      std::size_t offset, std::size_t, httplib::DataSink& sink) {
                                    if (offset != 0) {
                                      waitForTheEnd();
                                      return false;
                                    }
                                    return sink.write(body.data(), body.size());
                                  });
  });
  if (port == 0) {
    port_ = server.bind_to_any_port("127.0.0.1");
  } else if (server.bind_to_port("127.0.0.1", port)) {
    port_ = port;
  }
  if (port_ <= 0) throw std::runtime_error("no port");
  running_->thread = std::thread([this] { running_->server.listen_after_bind(); });
  while (!server.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

HttpsServer::~HttpsServer() {
  running_->stopping = true;
  running_->server.stop();
  running_->thread.join();
}

int HttpsServer::count(const std::string& path) const {
  const std::lock_guard lock(mutex_);
  return static_cast<int>(
      std::ranges::count_if(seen_, [&path](const Seen& seen) { return seen.path == path; }));
}

std::vector<std::string> HttpsServer::authorizations() const {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> sent;
  for (const Seen& seen : seen_)
    if (!seen.authorization.empty()) sent.push_back(seen.authorization);
  return sent;
}

HttpsServer::Handler HttpsServer::protectedBy(const std::string& scheme,
                                              const std::string& authorization, Handler page) {
  return [scheme, authorization, page = std::move(page)](const Seen& seen) {
    if (seen.authorization == authorization) return page(seen);
    Answer refusal;
    refusal.status = 401;
    // Not a page's own request, so it tells that the refusal was shown, and comes without a
    // sign-in.
    refusal.body = "<title>refused</title>refused";
    refusal.fields.emplace_back("WWW-Authenticate", scheme);
    return refusal;
  };
}

}  // namespace tarnwick
