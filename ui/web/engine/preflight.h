#pragma once

#include <QtCore/QObject>
#include <QtCore/QUrl>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <functional>
#include <optional>
#include <string>

#include "ui/web/rules/challenge.h"

namespace tarnwick {

/// What the server showed of itself before the engine talks to it.
struct ServerFacts {
  /// Of the certificate; absent when no encrypted connection came about.
  std::optional<std::string> fingerprint;
  /// The scheme that it wants a sign-in with, as far as it said.
  AuthenticationMethod method = AuthenticationMethod::other;
};

/// The fingerprint under which certificates are told apart.
[[nodiscard]] std::string fingerprintOf(const QSslCertificate& certificate);

/// One small request of ours, because the engine tells nobody which scheme a challenge has. It
/// takes any certificate, follows nothing, sends and keeps nothing, and has no limit of its own.
/// Deleting it ends it.
class Preflight : public QObject {
  Q_OBJECT

 public:
  using Done = std::function<void(const ServerFacts&)>;

  /// Asks for the root of `server`, an https address of this computer. `done` is called once, from
  /// the event loop, also when nobody answers; it may delete the object.
  Preflight(const QUrl& server, Done done);
  ~Preflight() override;

 private:
  void finish();

  QNetworkAccessManager network_;
  QNetworkReply* reply_;
  Done done_;
  ServerFacts facts_;
};

}  // namespace tarnwick
