#pragma once

#include <optional>
#include <string>

namespace tarnwick {

/// The certificate that the desktop is known by. Every certificate of the desktop's host is taken,
/// but the password goes only to the holder of the first one: whoever takes the port later, while
/// the container is down, has another. Fingerprints are opaque texts.
class CertificateMemory {
 public:
  /// Whether this is the desktop's certificate. The first one that is asked about becomes it.
  bool recognise(const std::string& fingerprint) {
    if (!known_) known_ = fingerprint;
    return *known_ == fingerprint;
  }

  /// The container was made anew, and its certificate may be a new one.
  void forget() { known_.reset(); }

 private:
  std::optional<std::string> known_;
};

/// The certificates that one profile of the web engine has met. A profile repeats a credential to
/// the same address unasked, and an accepted certificate is never shown to us again; therefore a
/// profile that was given a credential stays with one certificate.
class ProfileTrust {
 public:
  /// False when a load over this certificate needs a fresh profile.
  [[nodiscard]] bool suits(const std::string& fingerprint) const;

  /// A load over this certificate, learned by ourselves, begins.
  void expect(const std::string& fingerprint);

  /// The engine asks about a certificate. False: refuse it this time, because the profile would
  /// hand its credential to a stranger; the next load gets a fresh profile and is let through.
  [[nodiscard]] bool meet(const std::string& fingerprint);

  void credentialGiven() { holdsCredential_ = true; }

 private:
  std::optional<std::string> first_;
  bool mixed_ = false;
  bool holdsCredential_ = false;
};

}  // namespace tarnwick
