#include <gmock/gmock.h>

#include "tests/web/web_view_fixture.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char basic[] = "Basic realm=\"Login\"";
/// Tells the server that the page runs, by a request that carries the sign-in as well.
constexpr char reporting[] = "<script>fetch('/runs')</script>";

class SignInTest : public WebViewTest {
 protected:
  HttpsServer::Handler desktop(const std::string& scheme = basic,
                               const std::string& body = reporting) {
    return HttpsServer::protectedBy(
        scheme, signIn, [body](const Seen& seen) { return page(seen.path == "/" ? body : ""); });
  }

  bool shows() {
    return eventually([this] { return !isConnecting(); });
  }
};

TEST_F(SignInTest, TakesTheSelfSignedCertificateOfTheDesktopOnly) {
  serve(reporting);
  open("localhost");
  pause(1500ms);
  EXPECT_TRUE(isConnecting());
  EXPECT_FALSE(server_->saw("/"));

  open();
  EXPECT_TRUE(eventually([this] { return server_->saw("/runs"); }));
  EXPECT_TRUE(shows());
  EXPECT_EQ(view_->accessibleName(), QStringLiteral("Linux desktop"));
}

TEST_F(SignInTest, SignsInWithTheStoredPassword) {
  serve(desktop());
  open();
  ASSERT_TRUE(eventually([this] { return server_->saw("/runs"); }));
  EXPECT_THAT(server_->authorizations(), Each(signIn));
}

TEST_F(SignInTest, SendsAWrongPasswordOnceAndShowsTheRefusal) {
  services_->stored = QStringLiteral("wrong");
  serve(desktop());
  open();
  ASSERT_TRUE(shows());
  pause(500ms);
  EXPECT_THAT(server_->authorizations(), ElementsAre("Basic bGludXg6d3Jvbmc="));
  EXPECT_FALSE(isConnecting()) << "a refusal is an answer, not a failure";

  services_->stored = QStringLiteral("secret");
  reload();
  EXPECT_TRUE(eventually([this] { return server_->saw("/runs"); }));
}

TEST_F(SignInTest, SendsNothingWhenProtectionIsOffOrNoPasswordIsStored) {
  services_->required = false;
  serve(desktop());
  open();
  ASSERT_TRUE(shows());
  services_->required = true;
  services_->stored.reset();
  reload();
  ASSERT_TRUE(eventually([this] { return server_->count("/") >= 4; }));
  pause(500ms);
  EXPECT_THAT(server_->authorizations(), IsEmpty());
}

TEST_F(SignInTest, NeverAnswersADigestChallenge) {
  constexpr char digest[] = "Digest realm=\"Login\", nonce=\"1\", qop=\"auth\", algorithm=MD5";
  for (const std::string& scheme : {std::string(digest), std::string(basic) + ", " + digest}) {
    serve(desktop(scheme));
    open();
    ASSERT_TRUE(shows()) << scheme;
    pause(300ms);
    EXPECT_GE(server_->count("/"), 2);
    EXPECT_THAT(server_->authorizations(), IsEmpty()) << scheme;
  }
}

TEST_F(SignInTest, WhoeverTakesThePortWithAnotherCertificateGetsNoPassword) {
  // A page that keeps asking is how the engine would hand over what it remembers.
  serve(desktop(basic, "<script>setInterval(()=>fetch('/poll').catch(()=>0),100)</script>"));
  open();
  ASSERT_TRUE(eventually([this] { return server_->count("/poll") > 2; }));
  const int port = server_->port();

  server_.reset();
  const Identity stranger;
  const auto ours = std::exchange(identity_, stranger);
  serve(desktop(), port);
  pause(1500ms);
  EXPECT_THAT(server_->authorizations(), IsEmpty()) << "by the page's own requests";
  reload();
  ASSERT_TRUE(eventually([this] { return server_->count("/") >= 2; }))
      << "its certificate is accepted all the same";
  pause(500ms);
  EXPECT_THAT(server_->authorizations(), IsEmpty());
  open();
  ASSERT_TRUE(eventually([this] { return server_->count("/") >= 4; }));
  pause(500ms);
  EXPECT_THAT(server_->authorizations(), IsEmpty()) << "in a new view";

  // The desktop comes back and is known again.
  server_.reset();
  identity_ = ours;
  serve(desktop(), port);
  reload();
  EXPECT_TRUE(eventually([this] { return server_->saw("/runs"); }));
}

TEST_F(SignInTest, AContainerThatWasMadeAnewMayHaveANewCertificate) {
  serve(desktop());
  open();
  ASSERT_TRUE(eventually([this] { return server_->saw("/runs"); }));
  const int port = server_->port();
  server_.reset();
  identity_ = Identity();
  serve(desktop(), port);
  loader_.forgetCertificate();
  open();
  EXPECT_TRUE(eventually([this] { return server_->saw("/runs"); }));
}

TEST_F(SignInTest, AnotherPortOfThisComputerGetsNoPassword) {
  const Identity stranger;
  for (const Identity& identity : {stranger, identity_}) {
    const HttpsServer other(identity, desktop());
    const std::string address = "'https://127.0.0.1:" + std::to_string(other.port()) + "/'";
    for (const std::string& way : {"location=" + address, "open(" + address + ")"}) {
      const int before = other.count("/");
      serve(desktop(basic, "<script>fetch('/runs').then(()=>" + way + ")</script>"));
      loader_.forgetCertificate();
      open();
      ASSERT_TRUE(eventually([&] { return other.count("/") > before; })) << way;
      pause(400ms);
      EXPECT_THAT(other.authorizations(), IsEmpty()) << way;
      EXPECT_THAT(server_->authorizations(), Contains(signIn)) << way;
    }
  }
}

}  // namespace
}  // namespace tarnwick
