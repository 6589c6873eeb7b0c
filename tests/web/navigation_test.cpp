#include "ui/web/engine/navigation.h"

#include <QtCore/QEventLoop>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <gtest/gtest.h>
#include <vector>

#include "tests/web/https_server.h"

namespace tarnwick {
namespace {

class Host : public WebHostPort {
 public:
  bool requirePassword() override { return false; }
  std::optional<std::string> password() override { return std::nullopt; }
  void after(std::chrono::milliseconds, std::function<void()>) override { ++retries; }
  void openInBrowser(const std::string&) override {}
  std::optional<std::string> askSavePath(const std::string&) override { return std::nullopt; }
  std::vector<std::string> chooseFiles(UploadOptions) override { return {}; }
  std::optional<int> showMessage(const std::string&, const std::vector<std::string>&) override {
    return std::nullopt;
  }

  int retries = 0;
};

/// The same as the program's, but for the length of the limit.
class NavigationTest : public testing::Test {
 protected:
  void load(const std::function<Answer(const Seen&)>& handler) {
    server_ = std::make_unique<HttpsServer>(identity_, handler);
    const std::string url = "https://127.0.0.1:" + std::to_string(server_->port()) + "/";
    navigation_ = std::make_unique<Navigation>(
        QUrl(QString::fromStdString(url)), keeper_,
        Navigation::Hooks{[this] {
                            return keeper_.profile(folder_.filePath(QStringLiteral("s")),
                                                   folder_.filePath(QStringLiteral("c")));
                          },
                          [](DesktopPage&) {}, [](Navigation::Scene) {}});
    coordinator_ = std::make_unique<Coordinator>(*navigation_, host_);
    navigation_->open(*coordinator_);
    navigation_->load(url, std::chrono::seconds(1));
  }

  static void pause(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
  }

  QTemporaryDir folder_;
  Identity identity_;
  ProfileKeeper keeper_;
  Host host_;
  std::unique_ptr<HttpsServer> server_;
  std::unique_ptr<Navigation> navigation_;
  std::unique_ptr<Coordinator> coordinator_;
};

TEST_F(NavigationTest, ALoadThatNothingComesOfFailsOnceAtTheLimit) {
  load([](const Seen&) {
    Answer answer;
    answer.pace = Pace::neverAnswers;
    return answer;
  });
  pause(600);
  EXPECT_EQ(host_.retries, 0);
  pause(1500);
  EXPECT_EQ(host_.retries, 1);
}

TEST_F(NavigationTest, TheEnginesOwnWaitEndsAtTheLimitToo) {
  int requests = 0;
  load([&requests](const Seen& seen) {
    Answer answer;
    // Our own first request is answered, the engine's is not.
    if (seen.path == "/" && ++requests > 1) answer.pace = Pace::neverAnswers;
    return answer;
  });
  pause(2500);
  EXPECT_EQ(requests, 2);
  EXPECT_EQ(host_.retries, 1);
}

TEST_F(NavigationTest, APageThatHasComeIsNotCutOff) {
  load([](const Seen& seen) {
    Answer answer;
    answer.body = "<title>here</title><img src=never>";
    if (seen.path == "/never") answer.pace = Pace::neverAnswers;
    return answer;
  });
  pause(2500);
  EXPECT_TRUE(server_->saw("/never"));
  EXPECT_EQ(host_.retries, 0);
}

}  // namespace
}  // namespace tarnwick
