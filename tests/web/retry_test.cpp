#include "tests/web/web_view_fixture.h"

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

class RetryTest : public WebViewTest {};

TEST_F(RetryTest, TriesAgainUntilTheServerIsUp) {
  serve("");
  const int port = server_->port();
  QUrl url(QStringLiteral("https://127.0.0.1/"));
  url.setPort(port);
  server_.reset();
  open(url);
  pause(2500ms);
  EXPECT_TRUE(isConnecting());
  serve([](const Seen&) { return page("<script>fetch('/runs')</script>"); }, port);
  EXPECT_TRUE(eventually([this] { return server_->saw("/runs"); }, 5s));
  EXPECT_TRUE(eventually([this] { return !isConnecting(); }, 5s));
}

TEST_F(RetryTest, ANewTokenReloadsOnceAndTheSameTokenDoesNot) {
  serve("<script>fetch('/runs')</script>");
  open();
  ASSERT_TRUE(eventually([this] { return server_->count("/runs") == 1; }));
  view_->updateView(token_);
  pause(700ms);
  EXPECT_EQ(server_->count("/runs"), 1);
  reload();
  EXPECT_TRUE(eventually([this] { return server_->count("/runs") == 2; }));
  view_->updateView(token_);
  pause(2500ms);
  EXPECT_EQ(server_->count("/runs"), 2);
}

TEST_F(RetryTest, AnErrorStatusWithAPageIsAnAnswer) {
  serve([](const Seen& seen) {
    Answer answer = page("<script>fetch('/runs')</script>");
    if (seen.path == "/") answer.status = 500;
    return answer;
  });
  open();
  ASSERT_TRUE(eventually([this] { return server_->saw("/runs") && !isConnecting(); }));
  pause(2500ms);
  EXPECT_EQ(server_->count("/runs"), 1);
}

TEST_F(RetryTest, APageThatBreaksOffIsNotLoadedAgain) {
  serve([](const Seen& seen) {
    Answer answer = page("<script>fetch('/runs')</script>" + std::string(4000, 'x'));
    if (seen.path == "/") answer.pace = Pace::stallsHalfway;
    return answer;
  });
  const int port = server_->port();
  open();
  ASSERT_TRUE(eventually([this] { return server_->saw("/runs") && !isConnecting(); }));
  server_.reset();
  serve([](const Seen&) { return page(""); }, port);
  pause(3s);
  EXPECT_FALSE(server_->saw("/"));
}

TEST_F(RetryTest, APageWithAPartThatNeverComesIsShownAndCanBeReloaded) {
  serve([](const Seen& seen) {
    Answer answer = page("<script>fetch('/runs')</script><img src=never>");
    if (seen.path == "/never") answer.pace = Pace::neverAnswers;
    return answer;
  });
  open();
  ASSERT_TRUE(eventually([this] { return server_->saw("/runs") && !isConnecting(); }));
  reload();
  EXPECT_TRUE(eventually([this] { return server_->count("/runs") == 2; }));
}

TEST_F(RetryTest, ALoadThatIsReplacedCountsAsFailedAndIsTriedAgain) {
  serve([](const Seen& seen) {
    Answer answer = page("");
    if (seen.path == "/slow") answer.pace = Pace::neverAnswers;
    if (seen.path == "/") answer = page("<script>setTimeout(()=>location='/slow',50)</script>");
    return answer;
  });
  open();
  ASSERT_TRUE(eventually([this] { return server_->saw("/slow"); }));
  const int before = server_->count("/");
  reload();
  ASSERT_TRUE(eventually([this, before] { return server_->count("/") >= before + 2; }));
  EXPECT_TRUE(eventually([this, before] { return server_->count("/") >= before + 4; }, 5s));
}

TEST_F(RetryTest, APortThatTheEngineRefusesStaysQuiet) {
  open(QUrl(QStringLiteral("https://127.0.0.1:6000/")));
  pause(2500ms);
  EXPECT_TRUE(isConnecting());
}

}  // namespace
}  // namespace tarnwick
