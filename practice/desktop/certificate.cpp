#include "practice/desktop/certificate.h"

#include <cstdio>
#include <fcntl.h>
#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnwick::practice {
namespace {

constexpr long kTenYears = 10L * 365 * 24 * 60 * 60;

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File openFile(const std::filesystem::path& path, const char* mode) {
  const int flags = *mode == 'r' ? O_RDONLY : O_WRONLY | O_CREAT | O_TRUNC;
  const int descriptor = ::open(path.c_str(), flags | O_CLOEXEC, 0600);
  return {descriptor < 0 ? nullptr : ::fdopen(descriptor, mode), &std::fclose};
}

void addExtension(X509* certificate, int kind, const char* value) {
  X509V3_CTX context;
  X509V3_set_ctx_nodb(&context);
  X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
  X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, kind, value);
  if (extension == nullptr) return;
  X509_add_ext(certificate, extension, -1);
  X509_EXTENSION_free(extension);
}

Certificate make() {
  Certificate made;
  made.key.reset(EVP_EC_gen("P-256"));
  made.certificate.reset(X509_new());
  X509* certificate = made.certificate.get();
  if (!made.key || certificate == nullptr) return {};
  unsigned char serial[8] = {};
  if (RAND_bytes(serial, sizeof serial) != 1) return {};
  BIGNUM* number = BN_bin2bn(serial, sizeof serial, nullptr);
  BN_to_ASN1_INTEGER(number, X509_get_serialNumber(certificate));
  BN_free(number);
  X509_set_version(certificate, 2);
  X509_gmtime_adj(X509_getm_notBefore(certificate), -60);
  X509_gmtime_adj(X509_getm_notAfter(certificate), kTenYears);
  X509_set_pubkey(certificate, made.key.get());
  X509_NAME* name = X509_get_subject_name(certificate);
  const auto* text = reinterpret_cast<const unsigned char*>("127.0.0.1");
  X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, text, -1, -1, 0);
  X509_set_issuer_name(certificate, name);
  addExtension(certificate, NID_subject_alt_name, "IP:127.0.0.1");
  addExtension(certificate, NID_basic_constraints, "critical,CA:FALSE");
  addExtension(certificate, NID_ext_key_usage, "serverAuth");
  if (X509_sign(certificate, made.key.get(), EVP_sha256()) == 0) return {};
  return made;
}

Certificate load(const std::filesystem::path& path) {
  Certificate loaded;
  const File file = openFile(path, "r");
  if (!file) return loaded;
  loaded.key.reset(PEM_read_PrivateKey(file.get(), nullptr, nullptr, nullptr));
  loaded.certificate.reset(PEM_read_X509(file.get(), nullptr, nullptr, nullptr));
  return loaded.key && loaded.certificate ? std::move(loaded) : Certificate{};
}

void save(const std::filesystem::path& path, const Certificate& made) {
  std::filesystem::path temporary = path;
  temporary += ".new";
  File file = openFile(temporary, "w");
  if (!file) return;
  PEM_write_PrivateKey(file.get(), made.key.get(), nullptr, nullptr, 0, nullptr, nullptr);
  PEM_write_X509(file.get(), made.certificate.get());
  std::error_code ignored;
  if (std::fclose(file.release()) == 0) std::filesystem::rename(temporary, path, ignored);
}

}  // namespace

Certificate certificateIn(const std::filesystem::path& folder, CertificateKeeping keeping) {
  const std::filesystem::path path = folder / "certificate.pem";
  if (keeping == CertificateKeeping::MakeNew) return make();
  Certificate certificate = load(path);
  if (certificate.certificate) return certificate;
  certificate = make();
  if (certificate.certificate) save(path, certificate);
  return certificate;
}

}  // namespace tarnwick::practice
