#include "practice/desktop/site.h"

#include <chrono>
#include <fmt/format.h>
#include <fstream>
#include <iterator>
#include <openssl/crypto.h>
#include <thread>

#include "practice/base64.h"
#include "practice/desktop/pages.h"

namespace tarnwick::practice {
namespace {

constexpr std::size_t kLargestBody = 8 << 20;
constexpr const char* kHtml = "text/html; charset=utf-8";
constexpr const char* kText = "text/plain; charset=utf-8";

std::string capitalised(std::string word) {
  if (word == "xfce" || word == "kde" || word == "mate") {
    for (char& c : word) c = static_cast<char>(c - 'a' + 'A');
  } else if (word != "i3" && !word.empty() && word[0] >= 'a' && word[0] <= 'z') {
    word[0] = static_cast<char>(word[0] - 'a' + 'A');
  }
  return word;
}

/// "alpine-xfce" as "XFCE on Alpine"; anything that could mean something to HTML is left out.
std::string displayName(const std::string& flavor) {
  std::string plain;
  for (const char c : flavor) {
    const bool kept = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (kept || c == '-') plain += c;
  }
  const std::size_t dash = plain.find('-');
  if (dash == std::string::npos) return capitalised(plain);
  return capitalised(plain.substr(dash + 1)) + " on " + capitalised(plain.substr(0, dash));
}

void replaceAll(std::string& text, std::string_view what, const std::string& by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
}

bool sameText(const std::string& left, const std::string& right) {
  return left.size() == right.size() && CRYPTO_memcmp(left.data(), right.data(), left.size()) == 0;
}

void challenge(httplib::Response& response, const std::string& header) {
  response.status = 401;
  response.set_header("WWW-Authenticate", header);
  response.set_content("<!doctype html><title>Practice desktop</title>Sign-in is needed.", kHtml);
}

constexpr const char* kBasic = R"(Basic realm="Login")";
constexpr const char* kDigest =
    R"(Digest realm="Login", qop="auth", algorithm=MD5, nonce="7072616374696365", opaque="5f")";

}  // namespace

Site::Site(const DesktopSettings& settings) : settings_(settings), page_(kDesktopPage) {
  replaceAll(page_, "{{FLAVOR}}", displayName(settings.flavor));
  replaceAll(page_, "{{SHARED}}", settings.sharesFolder ? "yes" : "no");
  if (settings.password) credentials_ = "Basic " + base64(settings.user + ":" + *settings.password);
}

void Site::install(httplib::Server& server) {
  server.set_payload_max_length(kLargestBody);
  server.set_pre_routing_handler(
      [this](const Request& request, Response& response) { return admit(request, response); });
  server.Get("/",
             [this](const Request& request, Response& response) { sendPage(request, response); });
  server.Get("/status",
             [](const Request&, Response& response) { response.set_content("ok", kText); });
  server.Get("/note", [this](const Request&, Response& response) { readNote(response); });
  server.Put("/note",
             [this](const Request& request, Response& response) { writeNote(request, response); });
  installLab(server);
}

bool Site::signedIn(const Request& request) const {
  if (settings_.locked || settings_.faults.has(Fault::DesktopWrongPassword)) return false;
  return credentials_.empty() || sameText(request.get_header_value("Authorization"), credentials_);
}

Site::Handled Site::admit(const Request& request, Response& response) {
  response.set_header("Cache-Control", "no-store");
  response.set_header("X-Content-Type-Options", "nosniff");
  if (settings_.faults.has(Fault::DesktopAnswers500)) {
    response.status = 500;
    response.set_content("The practice desktop was ordered to fail.", kText);
    return Handled::Handled;
  }
  if (settings_.faults.has(Fault::DesktopRedirects)) {
    // Always one step further: a client that follows never arrives.
    response.set_redirect(request.path + (request.path.ends_with('/') ? "on" : "/on"), 302);
    return Handled::Handled;
  }
  if (settings_.faults.has(Fault::DesktopDigest)) {
    challenge(response, kDigest);
    return Handled::Handled;
  }
  if (signedIn(request)) return Handled::Unhandled;
  challenge(response, kBasic);
  return Handled::Handled;
}

void Site::sendPage(const Request&, Response& response) const {
  if (!settings_.faults.has(Fault::DesktopDrips)) {
    response.set_content(page_, kHtml);
    return;
  }
  response.set_content_provider(page_.size(), kHtml,
                                [this](std::size_t offset, std::size_t, httplib::DataSink& sink) {
                                  std::this_thread::sleep_for(std::chrono::seconds(1));
                                  return sink.write(page_.data() + offset, 1);
                                });
}

void Site::readNote(Response& response) {
  const std::lock_guard lock(noteMutex_);
  std::ifstream file(settings_.volumeFolder / "note.txt", std::ios::binary);
  response.set_content(
      std::string{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()}, kText);
}

void Site::writeNote(const Request& request, Response& response) {
  const std::lock_guard lock(noteMutex_);
  const auto path = settings_.volumeFolder / "note.txt";
  const auto temporary = settings_.volumeFolder / "note.txt.new";
  std::ofstream file(temporary, std::ios::binary);
  file << request.body;
  file.close();
  std::error_code error;
  if (file) std::filesystem::rename(temporary, path, error);
  response.status = file && !error ? 204 : 507;
}

void Site::installLab(httplib::Server& server) const {
  const auto attachment = [&](const char* path, const char* disposition) {
    server.Get(path, [disposition](const Request&, Response& response) {
      response.set_header("Content-Disposition", disposition);
      response.set_content(std::string(64 << 10, 'T'), "application/octet-stream");
    });
  };
  attachment("/download.bin", R"(attachment; filename="download.bin")");
  attachment("/download-climbing", R"(attachment; filename="../../climbing.bin")");
  server.Get("/lab", [](const Request&, Response& response) {
    response.set_content(std::string(kLabPage), kHtml);
  });
  server.Get("/digest", [](const Request&, Response& response) { challenge(response, kDigest); });
  server.Get("/locked", [](const Request&, Response& response) { challenge(response, kBasic); });
  server.Post("/upload", [](const Request& request, Response& response) {
    const bool received = request.has_file("file");
    const auto& file = received ? request.get_file_value("file") : httplib::MultipartFormData{};
    response.set_content(fmt::format("received {} bytes", file.content.size()), kText);
  });
}

}  // namespace tarnwick::practice
