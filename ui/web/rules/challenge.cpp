#include "ui/web/rules/challenge.h"

namespace tarnwick {

ChallengeAnswer answerChallenge(const Challenge& challenge, CredentialSource& source) {
  ChallengeAnswer defaultHandling;
  if (challenge.host != desktopHost) return defaultHandling;
  if (challenge.method == AuthenticationMethod::serverTrust && challenge.hasServerTrust)
    return {Disposition::useCredential, TrustCredential{}};
  if (challenge.method != AuthenticationMethod::httpBasic) return defaultHandling;
  if (challenge.channel != Channel::desktop) return defaultHandling;
  if (!source.requirePassword()) return defaultHandling;
  std::optional<std::string> password = source.password();
  if (!password || password->empty()) return defaultHandling;
  // A password that was turned down once would be turned down again.
  if (challenge.previousFailureCount != 0) return defaultHandling;
  return {Disposition::useCredential, PasswordCredential{desktopUser, std::move(*password)}};
}

}  // namespace tarnwick
