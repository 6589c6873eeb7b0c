#include "ui/web/rules/certificate_memory.h"

namespace tarnwick {

bool ProfileTrust::suits(const std::string& fingerprint) const {
  return !mixed_ && (!first_ || *first_ == fingerprint);
}

void ProfileTrust::expect(const std::string& fingerprint) {
  if (!first_) first_ = fingerprint;
}

bool ProfileTrust::meet(const std::string& fingerprint) {
  expect(fingerprint);
  if (*first_ == fingerprint) return true;
  if (holdsCredential_) return false;
  mixed_ = true;
  return true;
}

}  // namespace tarnwick
