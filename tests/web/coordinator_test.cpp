#include "ui/web/rules/coordinator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class View : public WebViewPort {
 public:
  void load(const std::string& url, std::chrono::seconds limit) override {
    calls.push_back("load " + url + " " + std::to_string(limit.count()));
  }
  void reload() override { calls.emplace_back("reload"); }
  void reloadFromOrigin() override { calls.emplace_back("reloadFromOrigin"); }

  std::vector<std::string> calls;
};

class Host : public WebHostPort {
 public:
  bool requirePassword() override { return true; }
  std::optional<std::string> password() override { return "secret"; }
  void after(std::chrono::milliseconds delay, std::function<void()> work) override {
    EXPECT_EQ(delay.count(), 2000);
    scheduled.push_back(std::move(work));
  }
  void openInBrowser(const std::string& url) override { opened.push_back(url); }
  std::optional<std::string> askSavePath(const std::string& name) override {
    suggested = name;
    return savePath;
  }
  std::vector<std::string> chooseFiles(UploadOptions options) override {
    upload = options;
    return {"/a", "/b"};
  }
  std::optional<int> showMessage(const std::string& message,
                                 const std::vector<std::string>& titles) override {
    shown = message;
    buttons = titles;
    return pressed;
  }

  void elapse() {
    for (const auto& work : std::exchange(scheduled, {})) work();
  }

  std::vector<std::function<void()>> scheduled;
  std::vector<std::string> opened;
  std::string suggested;
  std::optional<std::string> savePath;
  UploadOptions upload;
  std::string shown;
  std::vector<std::string> buttons;
  std::optional<int> pressed;
};

class CoordinatorTest : public testing::Test {
 protected:
  CoordinatorTest() { coordinator->start("https://127.0.0.1:3001/", 7); }

  View view;
  Host host;
  std::unique_ptr<Coordinator> coordinator = std::make_unique<Coordinator>(view, host);
};

TEST_F(CoordinatorTest, LoadsOnceAndReloadsOncePerTokenChange) {
  coordinator->update(7);
  EXPECT_THAT(view.calls, ElementsAre("load https://127.0.0.1:3001/ 60"));
  coordinator->update(8);
  coordinator->update(8);
  coordinator->update(3);
  EXPECT_THAT(view.calls, ElementsAre("load https://127.0.0.1:3001/ 60", "reloadFromOrigin",
                                      "reloadFromOrigin"));
  EXPECT_EQ(coordinator->lastToken(), 3);
}

TEST_F(CoordinatorTest, RetriesThirtyTimesInARowAndIsArmedAnewBySuccessOrRequest) {
  const auto exhaust = [this] {
    for (int i = 0; i < 30; ++i) {
      EXPECT_EQ(coordinator->navigationFailed(), Coordinator::Retry::scheduled);
      view.calls.clear();
      host.elapse();
      EXPECT_THAT(view.calls, ElementsAre("reload"));
    }
    EXPECT_EQ(coordinator->navigationFailed(), Coordinator::Retry::givenUp);
    EXPECT_THAT(host.scheduled, IsEmpty());
    EXPECT_EQ(coordinator->retries(), 30);
  };
  exhaust();
  coordinator->navigationFinished();
  exhaust();
  coordinator->update(8);
  exhaust();
}

TEST_F(CoordinatorTest, ARetryThatOutlivesTheViewDoesNothing) {
  coordinator->navigationFailed();
  view.calls.clear();
  coordinator.reset();
  host.elapse();
  EXPECT_THAT(view.calls, IsEmpty());
}

TEST_F(CoordinatorTest, ANavigationThatBecameADownloadTakesBackItsOwnRetryOnly) {
  coordinator->navigationFailed();
  coordinator->navigationFailed();
  coordinator->navigationBecameDownload();
  EXPECT_EQ(coordinator->retries(), 1);
  view.calls.clear();
  host.elapse();
  EXPECT_THAT(view.calls, ElementsAre("reload"));
  coordinator->navigationBecameDownload();
  EXPECT_EQ(coordinator->retries(), 1) << "it is too late for a retry that has run";
}

TEST_F(CoordinatorTest, PopUpsNeverMakeASecondView) {
  view.calls.clear();
  coordinator->openPopUp({"", "", ""});
  for (const char* scheme : {"about", "blob", "data", "file", "javascript"})
    coordinator->openPopUp({std::string(scheme) + ":x", scheme, ""});
  EXPECT_THAT(view.calls, IsEmpty());
  EXPECT_THAT(host.opened, IsEmpty());

  coordinator->openPopUp({"https://127.0.0.1:3001/x", "https", "127.0.0.1"});
  coordinator->openPopUp({"https://localhost:3001/", "https", "localhost"});
  coordinator->openPopUp({"mailto:a@example.com", "mailto", ""});
  EXPECT_THAT(view.calls, ElementsAre("load https://127.0.0.1:3001/x 60"));
  EXPECT_THAT(host.opened, ElementsAre("https://localhost:3001/", "mailto:a@example.com"));
}

TEST_F(CoordinatorTest, DownloadsSuggestOnlyTheLastPartOfAName) {
  EXPECT_EQ(coordinator->downloadDestination("../../etc/x.txt"), std::nullopt);
  EXPECT_EQ(host.suggested, "x.txt");
  host.savePath = "/home/u/y";
  EXPECT_EQ(coordinator->downloadDestination("C:\\a\\b.txt"), "/home/u/y");
  EXPECT_EQ(host.suggested, "b.txt");
  for (const char* name : {"", "..", "a/..", "a/", "\n"})
    EXPECT_EQ(suggestedFileName(name), "download");
  EXPECT_EQ(suggestedFileName("Bericht \xc3\xbc.pdf"), "Bericht \xc3\xbc.pdf");
  EXPECT_EQ(decideResponse(true), ResponsePolicy::allow);
  EXPECT_EQ(decideResponse(false), ResponsePolicy::download);
}

TEST_F(CoordinatorTest, DialogsAnswerThePage) {
  coordinator->runAlert("hello");
  EXPECT_EQ(host.shown, "hello");
  EXPECT_THAT(host.buttons, ElementsAre("OK"));

  EXPECT_FALSE(coordinator->runConfirm("sure?")) << "closed without a button";
  EXPECT_THAT(host.buttons, ElementsAre("OK", "Cancel"));
  host.pressed = 1;
  EXPECT_FALSE(coordinator->runConfirm("sure?"));
  host.pressed = 0;
  EXPECT_TRUE(coordinator->runConfirm("sure?"));

  EXPECT_THAT(coordinator->runOpenPanel(true, false), ElementsAre("/a", "/b"));
  EXPECT_TRUE(host.upload.canChooseFiles && host.upload.allowsMultipleSelection);
  EXPECT_FALSE(host.upload.canChooseDirectories);
  EXPECT_THAT(coordinator->runOpenPanel(false, true), ElementsAre("/a", "/b"));
  EXPECT_TRUE(host.upload.canChooseFiles && host.upload.canChooseDirectories);
  EXPECT_FALSE(host.upload.allowsMultipleSelection);
}

}  // namespace
}  // namespace tarnwick
