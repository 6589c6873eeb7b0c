#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "ui/web/engine/desktop_page.h"
#include "ui/web/engine/preflight.h"
#include "ui/web/engine/profile_keeper.h"
#include "ui/web/rules/coordinator.h"

namespace tarnwick {

/// Carries out the loads of one view: asks the server who it is first, hands the load to the page,
/// ends it when nothing comes within the limit, and answers the page's challenges with what was
/// learned. Replaces page and profile when the certificate has changed. Interface thread only.
class Navigation : public QObject, public WebViewPort, public PageListener {
  Q_OBJECT

 public:
  /// What the user is to see.
  enum class Scene { connecting, page };

  struct Hooks {
    std::function<std::shared_ptr<EngineProfile>()> profile;
    /// A page was made; its predecessor is still there.
    std::function<void(DesktopPage&)> pageMade;
    std::function<void(Scene)> sceneChanged;
  };

  Navigation(QUrl desktop, ProfileKeeper& keeper, Hooks hooks);
  ~Navigation() override;

  /// Makes the page. The coordinator outlives it.
  void open(Coordinator& coordinator);

  void load(const std::string& url, std::chrono::seconds limit) override;
  void reload() override;
  void reloadFromOrigin() override;

  bool acceptsCertificate(const QUrl& url, const std::string& fingerprint) override;
  std::optional<PasswordCredential> credentialFor(const QUrl& url) override;
  bool grantsMouseLock(const QUrl& origin) override;
  void loadStarted() override;
  void loadCommitted() override;
  void loadEnded(LoadEnd end, const QUrl& url) override;
  void downloadBegan(const QUrl& url) override;

 private:
  enum class How { load, reload, reloadFromOrigin };

  void begin(How how, const QUrl& url);
  void proceed(How how, const QUrl& url, const ServerFacts& facts);
  void hand(How how, const QUrl& url);
  void makePage();
  void limitReached();
  void failed(Scene whileRetrying);
  void show(Scene scene);
  [[nodiscard]] QUrl current() const;

  QUrl desktop_;
  ProfileKeeper& keeper_;
  Hooks hooks_;
  Coordinator* coordinator_ = nullptr;
  std::shared_ptr<EngineProfile> profile_;
  std::shared_ptr<DesktopPage> page_;
  std::unique_ptr<Preflight> preflight_;
  QTimer limit_;
  QTimer settle_;
  Scene scene_ = Scene::connecting;

  /// The address that was asked for last.
  QUrl wanted_;
  /// Whom the last load goes to, and what was learned of it.
  QUrl server_;
  ServerFacts facts_;
  int credentialsSent_ = 0;
  bool committed_ = false;
  /// The page holds something that can be reloaded.
  bool pageHasContent_ = false;
  /// The limit has counted this load's failure already.
  bool cutOff_ = false;
  /// The server wanted a sign-in before it was known whether it may have one.
  bool askedTooSoon_ = false;
  QUrl stopped_;
};

}  // namespace tarnwick
