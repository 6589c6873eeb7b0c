#pragma once

#include <filesystem>
#include <memory>
#include <openssl/evp.h>
#include <openssl/x509.h>

namespace tarnwick::practice {

struct CertificateDeleter {
  void operator()(X509* certificate) const { X509_free(certificate); }
  void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};

struct Certificate {
  std::unique_ptr<X509, CertificateDeleter> certificate;
  std::unique_ptr<EVP_PKEY, CertificateDeleter> key;
};

enum class CertificateKeeping { Keep, MakeNew };

/// The self-signed certificate for 127.0.0.1 in `folder`, made when it is not there or does not
/// read. Both members are null when none could be made; one that cannot be saved is still returned.
Certificate certificateIn(const std::filesystem::path& folder, CertificateKeeping keeping);

}  // namespace tarnwick::practice
