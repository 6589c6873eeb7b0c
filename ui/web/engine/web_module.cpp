#include <QtCore/QCoreApplication>
#include <QtCore/QObject>
#include <QtWebEngineCore/qtwebenginecoreglobal.h>

#include "ui/web/engine/desktop_view.h"
#include "ui/web/engine/profile_keeper.h"
#include "ui/web/web_desktop_view.h"

namespace tarnwick {
namespace {

ProfileKeeper& keeper() {
  static ProfileKeeper keeper;
  return keeper;
}

}  // namespace

/// What the loader finds in the module.
class WebModule : public QObject, public WebDesktopModule {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID "tarnwick.WebDesktopModule/1")
  Q_INTERFACES(tarnwick::WebDesktopModule)

 public:
  WebDesktopView* makeView(const QUrl& url, qint64 reloadToken, WebDesktopServices& services,
                           QWidget* parent) override {
    auto* view = new DesktopView(url, reloadToken, services, keeper(), parent);
    // After the engine, which registers its own clean-up with the first page, comes up; so the
    // profile is gone before the engine is.
    static const bool registered = [] {
      qAddPostRoutine([] { keeper().renew(); });
      return true;
    }();
    Q_UNUSED(registered)
    return view;
  }

  void forgetCertificate() override { keeper().certificates().forget(); }

  [[nodiscard]] QString engineVersion() const override {
    return QStringLiteral("%1 (Chromium %2)")
        .arg(QLatin1String(qWebEngineVersion()), QLatin1String(qWebEngineChromiumVersion()));
  }
};

}  // namespace tarnwick

#include "web_module.moc"
