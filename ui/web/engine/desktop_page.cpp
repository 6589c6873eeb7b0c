#include "ui/web/engine/desktop_page.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QTimer>
#include <QtNetwork/QAuthenticator>
#include <QtNetwork/QSslCertificate>
#include <QtWebEngineCore/QWebEngineCertificateError>
#include <QtWebEngineCore/QWebEngineNewWindowRequest>
#include <utility>

#include "ui/web/engine/preflight.h"

namespace tarnwick {

/// Keeps page and profile over a nested event loop in which the view may go, and lets go of them
/// only after the engine's own functions have returned.
class DesktopPage::Keep {
 public:
  explicit Keep(DesktopPage& page) : page_(page.shared_from_this()) {}
  Keep(const Keep&) = delete;
  Keep& operator=(const Keep&) = delete;
  ~Keep() {
    QTimer::singleShot(0, QCoreApplication::instance(), [page = std::move(page_)] {});
  }

 private:
  std::shared_ptr<DesktopPage> page_;
};

std::shared_ptr<DesktopPage> DesktopPage::make(const std::shared_ptr<EngineProfile>& profile,
                                               PageListener& listener, Coordinator& coordinator) {
  // The page goes first, then the hold on its profile.
  return {new DesktopPage(*profile, listener, coordinator),
          [profile](const DesktopPage* page) { delete page; }};
}

DesktopPage::DesktopPage(EngineProfile& profile, PageListener& listener, Coordinator& coordinator)
    : QWebEnginePage(&profile.engine),
      trust_(profile.trust),
      listener_(listener),
      coordinator_(coordinator) {
  connectLoads();
  connectChallenges();
  connectRequests();
}

void DesktopPage::leave() {
  disconnect(this, nullptr, this, nullptr);
  disconnect(profile(), nullptr, this, nullptr);
  left_ = true;
}

void DesktopPage::connectLoads() {
  connect(this, &QWebEnginePage::loadingChanged, this, &DesktopPage::loadingChangedTo);
  // The engine announces a page that has come by progress alone; 100 is announced at every end.
  connect(this, &QWebEnginePage::loadProgress, this, [this](int percent) {
    if (percent > 0 && percent < 100) listener_.loadCommitted();
  });
}

void DesktopPage::loadingChangedTo(const QWebEngineLoadingInfo& info) {
  using Info = QWebEngineLoadingInfo;
  switch (info.status()) {
    case Info::LoadStartedStatus:
      if (!info.isErrorPage()) listener_.loadStarted();
      break;
    case Info::LoadSucceededStatus:
      listener_.loadEnded(LoadEnd::finished, info.url());
      break;
    case Info::LoadStoppedStatus:
      listener_.loadEnded(LoadEnd::stopped, info.url());
      break;
    case Info::LoadFailedStatus:
      if (info.errorDomain() == Info::HttpStatusCodeDomain)
        listener_.loadEnded(LoadEnd::refused, info.url());
      else
        listener_.loadEnded(info.isErrorPage() ? LoadEnd::failed : LoadEnd::brokenOff, info.url());
      break;
  }
}

void DesktopPage::connectChallenges() {
  connect(this, &QWebEnginePage::certificateError, this, [this](QWebEngineCertificateError error) {
    const auto chain = error.certificateChain();
    const bool accepted =
        !chain.isEmpty() && listener_.acceptsCertificate(error.url(), fingerprintOf(chain.first()));
    if (accepted)
      error.acceptCertificate();
    else
      error.rejectCertificate();
  });
  connect(this, &QWebEnginePage::authenticationRequired, this,
          [this](const QUrl& url, QAuthenticator* authenticator) {
            const auto credential = listener_.credentialFor(url);
            if (!credential) {
              // Anything else would be sent and asked for again.
              *authenticator = QAuthenticator();
              return;
            }
            trust_.credentialGiven();
            authenticator->setUser(QString::fromStdString(credential->user));
            authenticator->setPassword(QString::fromStdString(credential->password));
          });
}

void DesktopPage::connectRequests() {
  connect(this, &QWebEnginePage::newWindowRequested, this,
          [this](const QWebEngineNewWindowRequest& request) {
            const QUrl url = request.requestedUrl();
            coordinator_.openPopUp({url.toString(QUrl::FullyEncoded).toStdString(),
                                    url.scheme().toStdString(), url.host().toStdString()});
          });
  connect(this, &QWebEnginePage::featurePermissionRequested, this,
          &DesktopPage::permissionRequested);
  connect(profile(), &QWebEngineProfile::downloadRequested, this, &DesktopPage::downloadRequested);
}

void DesktopPage::permissionRequested(const QUrl& origin, Feature feature) {
  bool granted = false;
  switch (feature) {
    case MediaAudioCapture:
    case MediaVideoCapture:
    case MediaAudioVideoCapture:
    case DesktopVideoCapture:
    case DesktopAudioVideoCapture: {
      const auto type = feature == MediaAudioCapture        ? CaptureType::microphone
                        : feature == MediaVideoCapture      ? CaptureType::camera
                        : feature == MediaAudioVideoCapture ? CaptureType::both
                                                            : CaptureType::screen;
      granted = decideMediaCapture(origin.toString().toStdString(), type) == CaptureDecision::grant;
      break;
    }
    case MouseLock:
      // Games and 3D programs in the desktop steer with it; Esc always gives the pointer back.
      granted = listener_.grantsMouseLock(origin);
      break;
    case Notifications:
    case Geolocation:
      break;
  }
  setFeaturePermission(origin, feature, granted ? PermissionGrantedByUser : PermissionDeniedByUser);
}

void DesktopPage::downloadRequested(QWebEngineDownloadRequest* download) {
  if (download->page() != this) return;
  listener_.downloadBegan(download->url());
  // The engine wants the answer before this returns.
  const Keep keep(*this);
  const auto path = coordinator_.downloadDestination(download->suggestedFileName().toStdString());
  if (!path || path->empty()) {
    download->cancel();
    return;
  }
  const QFileInfo file(QString::fromStdString(*path));
  download->setDownloadDirectory(file.absolutePath());
  download->setDownloadFileName(file.fileName());
  download->accept();
}

void DesktopPage::javaScriptAlert(const QUrl& /*origin*/, const QString& message) {
  if (left_) return;
  const Keep keep(*this);
  coordinator_.runAlert(message.toStdString());
}

bool DesktopPage::javaScriptConfirm(const QUrl& /*origin*/, const QString& message) {
  if (left_) return false;
  const Keep keep(*this);
  return coordinator_.runConfirm(message.toStdString());
}

bool DesktopPage::javaScriptPrompt(const QUrl& /*origin*/, const QString& /*message*/,
                                   const QString& /*defaultValue*/, QString* /*result*/) {
  return false;
}

QStringList DesktopPage::chooseFiles(FileSelectionMode mode, const QStringList& /*oldFiles*/,
                                     const QStringList& /*acceptedMimeTypes*/) {
  if (left_ || mode == FileSelectSave) return {};
  const Keep keep(*this);
  QStringList paths;
  for (const std::string& path :
       coordinator_.runOpenPanel(mode == FileSelectOpenMultiple, mode == FileSelectUploadFolder))
    paths.append(QString::fromStdString(path));
  return paths;
}

void DesktopPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel /*level*/,
                                           const QString& /*message*/, int /*line*/,
                                           const QString& /*source*/) {
  // What a page tells its own developers is none of our output.
}

}  // namespace tarnwick
