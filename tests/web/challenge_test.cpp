#include "ui/web/rules/challenge.h"

#include <gtest/gtest.h>

#include "ui/web/rules/certificate_memory.h"
#include "ui/web/rules/challenge_scheme.h"

namespace tarnwick {
namespace {

class Stored : public CredentialSource {
 public:
  bool requirePassword() override { return required; }
  std::optional<std::string> password() override {
    ++reads;
    return stored;
  }

  bool required = true;
  std::optional<std::string> stored = "secret";
  int reads = 0;
};

Challenge basic() {
  return {"127.0.0.1", AuthenticationMethod::httpBasic, false, 0, Channel::desktop};
}

Challenge trust(const std::string& host) {
  return {host, AuthenticationMethod::serverTrust, true, 0, Channel::stranger};
}

bool usesNothing(const ChallengeAnswer& answer) {
  return answer.disposition == Disposition::performDefaultHandling &&
         std::holds_alternative<std::monostate>(answer.credential);
}

TEST(Challenge, EveryCertificateOfTheDesktopsHostIsTakenAndNoOther) {
  Stored stored;
  const ChallengeAnswer answer = answerChallenge(trust("127.0.0.1"), stored);
  EXPECT_EQ(answer.disposition, Disposition::useCredential);
  EXPECT_TRUE(std::holds_alternative<TrustCredential>(answer.credential));

  for (const char* host :
       {"localhost", "127.0.0.2", "127.0.0.1.example.com", "127.0.0.1 ", "", "::1"})
    EXPECT_TRUE(usesNothing(answerChallenge(trust(host), stored))) << host;
  Challenge without = trust("127.0.0.1");
  without.hasServerTrust = false;
  EXPECT_TRUE(usesNothing(answerChallenge(without, stored)));
  EXPECT_EQ(stored.reads, 0);
}

TEST(Challenge, ThePasswordGoesToTheDesktopOnce) {
  Stored stored;
  const ChallengeAnswer answer = answerChallenge(basic(), stored);
  EXPECT_EQ(answer.disposition, Disposition::useCredential);
  const auto* credential = std::get_if<PasswordCredential>(&answer.credential);
  ASSERT_NE(credential, nullptr);
  EXPECT_EQ(credential->user, "linux");
  EXPECT_EQ(credential->password, "secret");

  Challenge again = basic();
  again.previousFailureCount = 1;
  EXPECT_TRUE(usesNothing(answerChallenge(again, stored)));
}

TEST(Challenge, ThePasswordGoesNowhereElse) {
  Stored stored;
  Challenge elsewhere = basic();
  elsewhere.host = "localhost";
  EXPECT_TRUE(usesNothing(answerChallenge(elsewhere, stored)));
  Challenge digest = basic();
  digest.method = AuthenticationMethod::other;
  EXPECT_TRUE(usesNothing(answerChallenge(digest, stored)));
  Challenge stranger = basic();
  stranger.channel = Channel::stranger;
  EXPECT_TRUE(usesNothing(answerChallenge(stranger, stored)));
  EXPECT_EQ(stored.reads, 0) << "read for nobody";

  stored.stored.reset();
  EXPECT_TRUE(usesNothing(answerChallenge(basic(), stored)));
  stored.stored = "";
  EXPECT_TRUE(usesNothing(answerChallenge(basic(), stored)));
  stored.stored = "secret";
  stored.required = false;
  EXPECT_TRUE(usesNothing(answerChallenge(basic(), stored)));
}

TEST(ChallengeScheme, BasicOnlyWhenNothingElseIsOffered) {
  for (const char* field : {"Basic realm=\"Login\"", "basic", "BASIC realm=x, charset=\"UTF-8\"",
                            "Basic realm=\"a, Digest b\"", "Basic realm=\"quote \\\", Digest \"",
                            " , Basic realm=x,, ", "Basic realm = \"x\", charset = \"UTF-8\""})
    EXPECT_EQ(challengeScheme(field), AuthenticationMethod::httpBasic) << field;
  for (const char* field :
       {"", ",", "Digest realm=\"Login\", nonce=\"1\"", "Basic realm=\"x\", Digest realm=\"x\"",
        "Digest realm=\"x\", Basic realm=\"x\"", "NTLM", "Basic realm=x, Negotiate", "Basically",
        "Negotiate YWJj==", "realm=\"Basic\"", "\"Basic\"", "\\",
        "Basic realm=\"open, Digest realm=\"x", "Basic realm=\"x\\\", Negotiate",
        "Basic realm=\"open, Digest realm=\" x", "Basic x\", Digest y=\""})
    EXPECT_EQ(challengeScheme(field), AuthenticationMethod::other) << field;
}

TEST(CertificateMemory, TheFirstOneIsTheDesktopsUntilForgotten) {
  CertificateMemory memory;
  EXPECT_TRUE(memory.recognise("ours"));
  EXPECT_FALSE(memory.recognise("theirs"));
  EXPECT_TRUE(memory.recognise("ours"));
  memory.forget();
  EXPECT_TRUE(memory.recognise("renewed"));
  EXPECT_FALSE(memory.recognise("ours"));
}

TEST(ProfileTrust, AProfileWithACredentialStaysWithOneCertificate) {
  ProfileTrust open;
  EXPECT_TRUE(open.suits("a"));
  EXPECT_TRUE(open.meet("a"));
  EXPECT_TRUE(open.meet("b")) << "nothing to lose yet";
  EXPECT_FALSE(open.suits("a")) << "b is not asked about again, so nobody could tell them apart";

  ProfileTrust signedIn;
  signedIn.expect("a");
  signedIn.credentialGiven();
  EXPECT_FALSE(signedIn.meet("b"));
  EXPECT_TRUE(signedIn.meet("a"));
  EXPECT_TRUE(signedIn.suits("a"));
  EXPECT_FALSE(signedIn.suits("b"));
}

}  // namespace
}  // namespace tarnwick
