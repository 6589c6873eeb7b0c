// A view that loads, fails and is gone at any moment, with its retries coming due in any order.
// Each byte of the input is one event.
#include "ui/web/rules/coordinator.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/input.h"
#include "support/require.h"

using namespace tarnwick;
using fuzz::require;

namespace {

class View final : public WebViewPort {
 public:
  void load(const std::string&, std::chrono::seconds) override { ++loads; }
  void reload() override { ++reloads; }
  void reloadFromOrigin() override { ++reloadsFromOrigin; }

  int loads = 0;
  int reloads = 0;
  int reloadsFromOrigin = 0;
};

class Host final : public WebHostPort {
 public:
  bool requirePassword() override { return false; }
  std::optional<std::string> password() override { return std::nullopt; }
  void after(std::chrono::milliseconds, std::function<void()> work) override {
    scheduled.push_back(std::move(work));
  }
  void openInBrowser(const std::string&) override {}
  std::optional<std::string> askSavePath(const std::string&) override { return std::nullopt; }
  std::vector<std::string> chooseFiles(UploadOptions) override { return {}; }
  std::optional<int> showMessage(const std::string&, const std::vector<std::string>&) override {
    return std::nullopt;
  }

  std::vector<std::function<void()>> scheduled;
};

class World {
 public:
  World() { coordinator_->start("https://127.0.0.1:3001/", 0); }

  void meet(unsigned char event) {
    switch (event % 6U) {
      case 0:
        fail();
        break;
      case 1:
        coordinator_->navigationFinished();
        retries_ = 0;
        break;
      case 2:
        becomeDownload();
        break;
      case 3:
        update(event / 6);
        break;
      default:
        if (!host_.scheduled.empty()) elapse(event / 6U % host_.scheduled.size());
    }
    require(coordinator_->retries() == retries_, "the retries are counted");
    require(view_.loads == 1, "the desktop is loaded once");
  }

  /// What was scheduled before the end finds nothing to do after it.
  void end() {
    coordinator_.reset();
    const int reloads = view_.reloads;
    for (const auto& work : host_.scheduled) work();
    require(view_.reloads == reloads, "nothing is reloaded after the end");
  }

 private:
  void fail() {
    const bool mayRetry = retries_ < Coordinator::maximumRetries;
    const auto retry = coordinator_->navigationFailed();
    require((retry == Coordinator::Retry::scheduled) == mayRetry, "there are 30 retries");
    if (!mayRetry) return;
    ++retries_;
    isDue_.push_back(true);
    latest_ = isDue_.size() - 1;
    require(host_.scheduled.size() == isDue_.size(), "one retry is scheduled for one failure");
  }

  void becomeDownload() {
    coordinator_->navigationBecameDownload();
    if (latest_ == none || !isDue_[latest_]) return;
    isDue_[latest_] = false;
    if (retries_ > 0) --retries_;
  }

  void update(int token) {
    const int before = view_.reloadsFromOrigin;
    const bool isNew = coordinator_->lastToken() != token;
    coordinator_->update(token);
    require(view_.reloadsFromOrigin == before + (isNew ? 1 : 0), "a new token reloads once");
    if (isNew) retries_ = 0;
  }

  void elapse(std::size_t index) {
    const int before = view_.reloads;
    host_.scheduled[index]();
    require(view_.reloads == before + (isDue_[index] ? 1 : 0), "a retry reloads once, when due");
    isDue_[index] = false;
  }

  static constexpr std::size_t none = static_cast<std::size_t>(-1);

  View view_;
  Host host_;
  std::unique_ptr<Coordinator> coordinator_ = std::make_unique<Coordinator>(view_, host_);
  std::int64_t retries_ = 0;
  std::vector<bool> isDue_;  ///< of each scheduled retry, whether it has yet to reload
  std::size_t latest_ = none;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  World world;
  while (!input.empty()) world.meet(input.byte());
  world.end();
  return 0;
}
