#pragma once

#include <QtWebEngineCore/QWebEngineDownloadRequest>
#include <QtWebEngineCore/QWebEngineLoadingInfo>
#include <QtWebEngineCore/QWebEnginePage>
#include <memory>
#include <optional>
#include <string>

#include "ui/web/engine/profile_keeper.h"
#include "ui/web/rules/coordinator.h"

namespace tarnwick {

enum class LoadEnd {
  /// A page shows, whatever status it came with; `refused` when the status was an error.
  finished,
  refused,
  /// No page came: the engine shows its own.
  failed,
  /// The page had come, and the rest of it failed.
  brokenOff,
  /// Ended from this side: by a newer load, by a stop, or because it became a download.
  stopped,
};

/// Hears what happens to the page's loads and answers for its connections.
class PageListener {
 public:
  PageListener() = default;
  PageListener(const PageListener&) = delete;
  PageListener& operator=(const PageListener&) = delete;
  virtual ~PageListener() = default;

  /// Whether to go on over a certificate that the engine cannot verify.
  virtual bool acceptsCertificate(const QUrl& url, const std::string& fingerprint) = 0;
  /// What to sign in with, or nothing.
  virtual std::optional<PasswordCredential> credentialFor(const QUrl& url) = 0;
  /// Whether the page at `origin` may hold the mouse pointer.
  virtual bool grantsMouseLock(const QUrl& origin) = 0;
  virtual void loadStarted() = 0;
  /// Something of the page that is loading has come.
  virtual void loadCommitted() = 0;
  virtual void loadEnded(LoadEnd end, const QUrl& url) = 0;
  virtual void downloadBegan(const QUrl& url) = 0;
};

/// One page of the engine: maps its signals to the listener and to the coordinator's questions, and
/// keeps itself and its profile while a dialog is open. Made by `make` only.
class DesktopPage : public QWebEnginePage, public std::enable_shared_from_this<DesktopPage> {
  Q_OBJECT

 public:
  /// The listener and the coordinator are there until `leave`.
  static std::shared_ptr<DesktopPage> make(const std::shared_ptr<EngineProfile>& profile,
                                           PageListener& listener, Coordinator& coordinator);

  /// Nobody is told anything any more; a dialog may keep the page for a while.
  void leave();

 protected:
  void javaScriptAlert(const QUrl& origin, const QString& message) override;
  bool javaScriptConfirm(const QUrl& origin, const QString& message) override;
  bool javaScriptPrompt(const QUrl& origin, const QString& message, const QString& defaultValue,
                        QString* result) override;
  QStringList chooseFiles(FileSelectionMode mode, const QStringList& oldFiles,
                          const QStringList& acceptedMimeTypes) override;
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                int line, const QString& source) override;

 private:
  class Keep;

  DesktopPage(EngineProfile& profile, PageListener& listener, Coordinator& coordinator);
  void connectLoads();
  void connectChallenges();
  void connectRequests();
  void loadingChangedTo(const QWebEngineLoadingInfo& info);
  void permissionRequested(const QUrl& origin, Feature feature);
  void downloadRequested(QWebEngineDownloadRequest* download);

  ProfileTrust& trust_;
  PageListener& listener_;
  Coordinator& coordinator_;
  bool left_ = false;
};

}  // namespace tarnwick
