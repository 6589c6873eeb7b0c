// Who may be sent the password, and what a page may make us open or save. The first line says which
// question is asked and in what situation, the second names the host, the rest is the server's
// text.
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/text/utf8.h"
#include "support/input.h"
#include "support/require.h"
#include "ui/web/rules/challenge.h"
#include "ui/web/rules/challenge_scheme.h"
#include "ui/web/rules/page_requests.h"

using namespace tarnwick;
using fuzz::require;

namespace {

class Source final : public CredentialSource {
 public:
  Source(bool required, std::optional<std::string> password)
      : required_(required), password_(std::move(password)) {}
  bool requirePassword() override { return required_; }
  std::optional<std::string> password() override { return password_; }

 private:
  bool required_;
  std::optional<std::string> password_;
};

void checkAnswer(fuzz::Input& situation, const std::string& host, AuthenticationMethod scheme) {
  Challenge challenge;
  challenge.host = host;
  constexpr AuthenticationMethod trust = AuthenticationMethod::serverTrust;
  challenge.method = situation.byte() % 2U != 0 ? trust : scheme;
  challenge.hasServerTrust = situation.byte() % 2U != 0;
  challenge.previousFailureCount = situation.byte() % 3;
  challenge.channel = situation.byte() % 2U != 0 ? Channel::desktop : Channel::stranger;
  const bool required = situation.byte() % 2U != 0;
  std::optional<std::string> password;
  if (situation.byte() % 2U != 0) password = std::string(situation.rest());

  Source source(required, password);
  const ChallengeAnswer answer = answerChallenge(challenge, source);
  const bool gives = answer.disposition == Disposition::useCredential;
  require(gives == !std::holds_alternative<std::monostate>(answer.credential),
          "a credential comes with the decision to use it");
  require(!gives || host == "127.0.0.1", "nobody else is trusted");
  if (std::holds_alternative<TrustCredential>(answer.credential)) {
    require(challenge.method == trust && challenge.hasServerTrust, "a certificate was asked about");
  }
  const bool maySend = host == "127.0.0.1" && challenge.channel == Channel::desktop && required &&
                       challenge.method == AuthenticationMethod::httpBasic &&
                       challenge.previousFailureCount == 0 && password && !password->empty();
  const auto* sent = std::get_if<PasswordCredential>(&answer.credential);
  require((sent != nullptr) == maySend, "the password goes to the desktop, once, and when wanted");
  require(sent == nullptr || (sent->password == *password && sent->user == "linux"),
          "the password is sent as it is");
}

AuthenticationMethod checkedScheme(std::string_view field) {
  const AuthenticationMethod method = challengeScheme(field);
  const std::string text(field);
  require(method != AuthenticationMethod::serverTrust, "no text asks about a certificate");
  require(challengeScheme(" ,\t, " + text) == method, "empty elements say nothing");
  std::string upper = text;
  std::ranges::transform(upper, upper.begin(),
                         [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  require(challengeScheme(upper) == method, "the case does not matter");
  if (method == AuthenticationMethod::httpBasic) {
    require(upper.find("BASIC") != std::string::npos, "Basic was named");
  }
  for (const char* other :
       {", Digest realm=\"x\"", ", NTLM", ",Negotiate abc=", ", Digest realm=\"x"}) {
    require(challengeScheme(text + other) == AuthenticationMethod::other,
            "next to another scheme Basic is not taken");
  }
  return method;
}

void checkFileName(std::string_view suggestion) {
  const std::string name = suggestedFileName(suggestion);
  require(!name.empty() && name != "." && name != "..", "the name names a file");
  const bool isPlain = std::ranges::all_of(name, [](char c) {
    return static_cast<unsigned char>(c) >= 0x20 && c != '\x7f' && c != '/' && c != '\\';
  });
  require(isPlain, "the name leads into no other folder");
  require(suggestedFileName(name) == name, "a name that was cleaned stays");
  if (wellFormedUtf8Prefix(suggestion) == suggestion.size()) {
    require(wellFormedUtf8Prefix(name) == name.size(), "no character is cut");
  }
}

void checkPopUp(const std::string& url, const std::string& host) {
  const std::string scheme = url.substr(0, url.find(':'));
  const PopUpDecision decision = decidePopUp({url, scheme, host});
  for (const char* inner : {"file", "javascript", "data", "blob", "qrc", "chrome"}) {
    require(scheme != inner || decision == PopUpDecision::ignore, "inner addresses open nowhere");
  }
  require(decision != PopUpDecision::loadInSameView || host == "127.0.0.1",
          "the view stays with the desktop");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::string_view head = input.line();
  fuzz::Input situation(reinterpret_cast<const std::uint8_t*>(head.data()), head.size());
  const std::string host(input.line());
  const std::string text(input.rest());

  checkAnswer(situation, host, checkedScheme(text));
  checkFileName(text);
  checkPopUp(text, host);
  return 0;
}
