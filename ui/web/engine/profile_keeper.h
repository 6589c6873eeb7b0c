#pragma once

#include <QtCore/QString>
#include <QtWebEngineCore/QWebEngineProfile>
#include <memory>

#include "ui/web/rules/certificate_memory.h"

namespace tarnwick {

/// A profile of the engine with what it was shown so far. Its pages must be gone before it.
struct EngineProfile {
  explicit EngineProfile(const QString& name) : engine(name) {}

  QWebEngineProfile engine;
  ProfileTrust trust;
};

/// Keeps the one persistent profile for all views, so that the page's storage has one owner, and
/// the certificate that the desktop is known by. Interface thread only.
class ProfileKeeper {
 public:
  /// The folders are looked at when a profile is made.
  std::shared_ptr<EngineProfile> profile(const QString& storageFolder, const QString& cacheFolder);

  /// The next call makes a fresh profile over the same storage. It knows no credential and no
  /// accepted certificate. The caller has given up the old one.
  void renew() { profile_.reset(); }

  CertificateMemory& certificates() { return certificates_; }

 private:
  std::shared_ptr<EngineProfile> profile_;
  CertificateMemory certificates_;
};

}  // namespace tarnwick
