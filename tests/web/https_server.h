#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick {

/// A key and a certificate signed with it, made on the spot.
class Identity {
 public:
  Identity();

 private:
  friend class HttpsServer;
  std::shared_ptr<void> key_;
  std::shared_ptr<void> certificate_;
};

enum class Pace {
  atOnce,
  /// The body is announced as longer than it is, and the rest never comes.
  stallsHalfway,
  neverAnswers,
};

/// What the tests' server answers with.
struct Answer {
  int status = 200;
  std::string body;
  std::string type = "text/html";
  std::vector<std::pair<std::string, std::string>> fields;
  Pace pace = Pace::atOnce;
};

struct Seen {
  std::string path;
  std::string authorization;
};

/// An HTTPS server on 127.0.0.1 in a thread of its own. The handler runs on the server's threads.
class HttpsServer {
 public:
  using Handler = std::function<Answer(const Seen&)>;

  /// `port` 0 takes any that is free.
  HttpsServer(const Identity& identity, Handler handler, int port = 0);
  HttpsServer(const HttpsServer&) = delete;
  HttpsServer& operator=(const HttpsServer&) = delete;
  ~HttpsServer();

  [[nodiscard]] int port() const { return port_; }
  /// Whether a request for the path has come; the query counts as part of it.
  [[nodiscard]] bool saw(const std::string& path) const { return count(path) > 0; }
  [[nodiscard]] int count(const std::string& path) const;
  /// The Authorization fields that were sent, whatever the path.
  [[nodiscard]] std::vector<std::string> authorizations() const;

  /// Refuses with the given scheme whoever does not send the password, else answers with `page`.
  static Handler protectedBy(const std::string& scheme, const std::string& authorization,
                             Handler page);

 private:
  struct Running;
  mutable std::mutex mutex_;
  std::vector<Seen> seen_;
  int port_ = 0;
  std::unique_ptr<Running> running_;
};

}  // namespace tarnwick
