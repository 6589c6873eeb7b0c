#include "ui/web/engine/navigation.h"

#include <utility>

namespace tarnwick {
namespace {

/// A page that has come, but not all of it, is shown after this time: something of it may never
/// end.
constexpr std::chrono::milliseconds settleTime{700};

bool isOnThisComputer(const QUrl& url) {
  return url.host() == QLatin1String(desktopHost);
}

bool isSecure(const QUrl& url) {
  return url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("wss");
}

bool sameServer(const QUrl& a, const QUrl& b) {
  return isSecure(a) && isSecure(b) && a.host() == b.host() && a.port(443) == b.port(443);
}

}  // namespace

Navigation::Navigation(QUrl desktop, ProfileKeeper& keeper, Hooks hooks)
    : desktop_(std::move(desktop)), keeper_(keeper), hooks_(std::move(hooks)) {
  limit_.setSingleShot(true);
  limit_.setInterval(Coordinator::loadLimit);
  connect(&limit_, &QTimer::timeout, this, &Navigation::limitReached);
  settle_.setSingleShot(true);
  settle_.setInterval(settleTime);
  connect(&settle_, &QTimer::timeout, this, [this] { show(Scene::page); });
}

Navigation::~Navigation() {
  // A page that a dialog still keeps must not speak to us any more.
  if (page_) page_->leave();
}

void Navigation::open(Coordinator& coordinator) {
  coordinator_ = &coordinator;
  makePage();
}

void Navigation::makePage() {
  auto profile = hooks_.profile();
  auto page = DesktopPage::make(profile, *this, *coordinator_);
  hooks_.pageMade(*page);
  if (page_) page_->leave();
  page_ = std::move(page);
  profile_ = std::move(profile);
  pageHasContent_ = false;
  committed_ = false;
}

void Navigation::load(const std::string& url, std::chrono::seconds limit) {
  limit_.setInterval(limit);
  wanted_ = QUrl::fromEncoded(QByteArray::fromStdString(url));
  begin(How::load, wanted_);
}

void Navigation::reload() {
  begin(How::reload, current());
}

void Navigation::reloadFromOrigin() {
  begin(How::reloadFromOrigin, current());
}

QUrl Navigation::current() const {
  const QUrl shown = page_->url();
  return pageHasContent_ && !shown.isEmpty() ? shown : wanted_;
}

void Navigation::begin(How how, const QUrl& url) {
  cutOff_ = false;
  limit_.start();
  preflight_.reset();
  if (!isOnThisComputer(url) || !isSecure(url)) {
    proceed(how, url, {});
    return;
  }
  preflight_ = std::make_unique<Preflight>(url, [this, how, url](const ServerFacts& facts) {
    preflight_.release()->deleteLater();
    proceed(how, url, facts);
  });
}

void Navigation::proceed(How how, const QUrl& url, const ServerFacts& facts) {
  server_ = url;
  facts_ = facts;
  credentialsSent_ = 0;
  askedTooSoon_ = false;
  if (facts.fingerprint) {
    if (sameServer(url, desktop_)) keeper_.certificates().recognise(*facts.fingerprint);
    if (!profile_->trust.suits(*facts.fingerprint)) {
      keeper_.renew();
      makePage();
    }
    profile_->trust.expect(*facts.fingerprint);
  }
  hand(how, url);
}

void Navigation::hand(How how, const QUrl& url) {
  // While it loads, the engine announces neither the end of the old load nor the start of the new.
  if (page_->isLoading()) page_->triggerAction(QWebEnginePage::Stop);
  if (how == How::load || !pageHasContent_)
    page_->load(url);
  else
    page_->triggerAction(how == How::reload ? QWebEnginePage::Reload
                                            : QWebEnginePage::ReloadAndBypassCache);
}

bool Navigation::acceptsCertificate(const QUrl& url, const std::string& fingerprint) {
  Challenge challenge;
  challenge.host = url.host().toStdString();
  challenge.method = AuthenticationMethod::serverTrust;
  challenge.hasServerTrust = true;
  if (coordinator_->answer(challenge).disposition != Disposition::useCredential) return false;
  return profile_->trust.meet(fingerprint);
}

std::optional<PasswordCredential> Navigation::credentialFor(const QUrl& url) {
  Challenge challenge;
  challenge.host = url.host().toStdString();
  challenge.previousFailureCount = credentialsSent_;
  if (sameServer(url, desktop_) && !facts_.fingerprint) askedTooSoon_ = true;
  if (sameServer(url, server_)) {
    challenge.method = facts_.method;
    const bool known = facts_.fingerprint && sameServer(url, desktop_) &&
                       profile_->trust.suits(*facts_.fingerprint) &&
                       keeper_.certificates().recognise(*facts_.fingerprint);
    challenge.channel = known ? Channel::desktop : Channel::stranger;
  }
  ChallengeAnswer answer = coordinator_->answer(challenge);
  auto* credential = std::get_if<PasswordCredential>(&answer.credential);
  if (credential == nullptr) return std::nullopt;
  ++credentialsSent_;
  return std::move(*credential);
}

bool Navigation::grantsMouseLock(const QUrl& origin) {
  return sameServer(origin, desktop_);
}

void Navigation::loadStarted() {
  committed_ = false;
  cutOff_ = false;
  // The page may have begun it by itself.
  if (!limit_.isActive()) limit_.start();
}

void Navigation::loadCommitted() {
  committed_ = true;
  pageHasContent_ = true;
  if (!preflight_) limit_.stop();
  settle_.start();
}

void Navigation::loadEnded(LoadEnd end, const QUrl& url) {
  if (!preflight_) limit_.stop();
  settle_.stop();
  switch (end) {
    case LoadEnd::finished:
      // A challenge after a success is a new question, not a second rejection.
      credentialsSent_ = 0;
      [[fallthrough]];
    case LoadEnd::refused:
      pageHasContent_ = true;
      if (end == LoadEnd::refused && std::exchange(askedTooSoon_, false)) {
        // It came up between our request and the engine's: the next load can sign in.
        failed(Scene::connecting);
        break;
      }
      coordinator_->navigationFinished();
      show(Scene::page);
      break;
    case LoadEnd::failed:
      pageHasContent_ = true;
      failed(Scene::connecting);
      break;
    case LoadEnd::brokenOff:
      show(Scene::page);
      break;
    case LoadEnd::stopped:
      if (committed_) {
        show(Scene::page);
      } else if (!std::exchange(cutOff_, false)) {
        stopped_ = url;
        failed(scene_);
      }
      break;
  }
}

void Navigation::downloadBegan(const QUrl& url) {
  if (std::exchange(stopped_, QUrl()) == url && !url.isEmpty())
    coordinator_->navigationBecameDownload();
}

void Navigation::limitReached() {
  preflight_.reset();
  cutOff_ = true;
  if (page_->isLoading()) page_->triggerAction(QWebEnginePage::Stop);
  failed(Scene::connecting);
}

void Navigation::failed(Scene whileRetrying) {
  const bool again = coordinator_->navigationFailed() == Coordinator::Retry::scheduled;
  show(again ? whileRetrying : Scene::page);
}

void Navigation::show(Scene scene) {
  settle_.stop();
  if (std::exchange(scene_, scene) != scene) hooks_.sceneChanged(scene);
}

}  // namespace tarnwick
