#include "ui/web/engine/profile_keeper.h"

#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkProxyFactory>
#include <QtWebEngineCore/QWebEngineSettings>

namespace tarnwick {

std::shared_ptr<EngineProfile> ProfileKeeper::profile(const QString& storageFolder,
                                                      const QString& cacheFolder) {
  if (profile_) return profile_;
  // The desktop is on this computer. The engine reads these two, and only it uses Qt's network.
  QNetworkProxyFactory::setUseSystemConfiguration(false);
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);

  // Only a profile with a name keeps anything on disk.
  profile_ = std::make_shared<EngineProfile>(QStringLiteral("tarnwick"));
  profile_->engine.setPersistentStoragePath(storageFolder);
  profile_->engine.setCachePath(cacheFolder);
  profile_->engine.settings()->setAttribute(QWebEngineSettings::PlaybackRequiresUserGesture, false);
  return profile_;
}

}  // namespace tarnwick
