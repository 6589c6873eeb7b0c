#pragma once

#include <optional>
#include <string>
#include <variant>

namespace tarnwick {

/// How the server asks us to prove or accept an identity. `other` stands for Digest, NTLM, client
/// certificates and for everything whose scheme is not known.
enum class AuthenticationMethod { serverTrust, httpBasic, other };

/// Whom an answer would reach: the desktop, over the certificate that it is known by, or anybody
/// else who listens on this computer.
enum class Channel { desktop, stranger };

/// One question of the web engine, reduced to what the answer depends on.
struct Challenge {
  std::string host;
  AuthenticationMethod method = AuthenticationMethod::other;
  /// The engine handed over the server's certificate together with the question.
  bool hasServerTrust = false;
  /// Credentials that were already rejected in this series of questions.
  int previousFailureCount = 0;
  Channel channel = Channel::stranger;
};

enum class Disposition { performDefaultHandling, useCredential };

/// The certificate that came with the question, taken as it is.
struct TrustCredential {};

/// To be kept by the engine for this session only, never on disk.
struct PasswordCredential {
  std::string user;
  std::string password;
};

struct ChallengeAnswer {
  Disposition disposition = Disposition::performDefaultHandling;
  std::variant<std::monostate, TrustCredential, PasswordCredential> credential;
};

/// Where a challenge finds the user's choice and the password. Both are read when they are needed,
/// so that a change counts from the next challenge on. Main thread.
class CredentialSource {
 public:
  CredentialSource() = default;
  CredentialSource(const CredentialSource&) = delete;
  CredentialSource& operator=(const CredentialSource&) = delete;
  virtual ~CredentialSource() = default;

  [[nodiscard]] virtual bool requirePassword() = 0;
  [[nodiscard]] virtual std::optional<std::string> password() = 0;
};

/// The only host whose certificate is taken unchecked and that may be sent the password.
inline constexpr char desktopHost[] = "127.0.0.1";
inline constexpr char desktopUser[] = "linux";

[[nodiscard]] ChallengeAnswer answerChallenge(const Challenge& challenge, CredentialSource& source);

}  // namespace tarnwick
