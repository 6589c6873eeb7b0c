#include "ui/web/engine/preflight.h"

#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkRequest>
#include <QtNetwork/QSslCertificate>
#include <QtNetwork/QSslConfiguration>
#include <utility>

#include "ui/web/rules/challenge_scheme.h"

namespace tarnwick {
namespace {

QNetworkRequest requestFor(const QUrl& server) {
  QUrl root;
  root.setScheme(server.scheme());
  root.setHost(server.host());
  root.setPort(server.port());
  root.setPath(QStringLiteral("/"));
  QNetworkRequest request(root);
  // Without the system's certificates, whose reading takes longer than the request.
  QSslConfiguration tls;
  tls.setPeerVerifyMode(QSslSocket::VerifyNone);
  request.setSslConfiguration(tls);
  request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
  request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
  request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
  request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                       QNetworkRequest::ManualRedirectPolicy);
  return request;
}

}  // namespace

std::string fingerprintOf(const QSslCertificate& certificate) {
  return certificate.digest(QCryptographicHash::Sha256).toHex().toStdString();
}

Preflight::Preflight(const QUrl& server, Done done) : done_(std::move(done)) {
  network_.setProxy(QNetworkProxy::NoProxy);
  reply_ = network_.get(requestFor(server));
  connect(reply_, &QNetworkReply::encrypted, this, [this] {
    facts_.fingerprint = fingerprintOf(reply_->sslConfiguration().peerCertificate());
  });
  // The fields are all that is wanted; the body may never end.
  connect(reply_, &QNetworkReply::metaDataChanged, this, &Preflight::finish, Qt::QueuedConnection);
  connect(reply_, &QNetworkReply::finished, this, &Preflight::finish, Qt::QueuedConnection);
}

Preflight::~Preflight() {
  reply_->disconnect(this);
  reply_->abort();
}

void Preflight::finish() {
  if (!done_) return;
  facts_.method = challengeScheme(reply_->rawHeader("WWW-Authenticate").toStdString());
  std::exchange(done_, nullptr)(facts_);
}

}  // namespace tarnwick
