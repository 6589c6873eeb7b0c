#include "ui/web/rules/coordinator.h"

namespace tarnwick {

void Coordinator::start(const std::string& url, std::int64_t reloadToken) {
  lastToken_ = reloadToken;
  view_.load(url, loadLimit);
}

void Coordinator::update(std::int64_t reloadToken) {
  if (lastToken_ == reloadToken) return;
  lastToken_ = reloadToken;
  retries_ = 0;
  view_.reloadFromOrigin();
}

Coordinator::Retry Coordinator::navigationFailed() {
  return retryLater();
}

Coordinator::Retry Coordinator::retryLater() {
  if (retries_ >= maximumRetries) return Retry::givenUp;
  ++retries_;
  auto pending = std::make_shared<const bool>(true);
  latest_ = pending;
  pending_.push_back(pending);
  host_.after(retryDelay, [this, retry = std::weak_ptr<const bool>(pending)] {
    const auto due = retry.lock();
    if (!due) return;
    std::erase(pending_, due);
    view_.reload();
  });
  return Retry::scheduled;
}

void Coordinator::navigationBecameDownload() {
  const auto latest = latest_.lock();
  if (!latest) return;
  std::erase(pending_, latest);
  if (retries_ > 0) --retries_;
}

ChallengeAnswer Coordinator::answer(const Challenge& challenge) const {
  return answerChallenge(challenge, host_);
}

void Coordinator::openPopUp(const PopUp& popUp) {
  switch (decidePopUp(popUp)) {
    case PopUpDecision::ignore:
      break;
    case PopUpDecision::loadInSameView:
      view_.load(popUp.url, loadLimit);
      break;
    case PopUpDecision::openInBrowser:
      host_.openInBrowser(popUp.url);
      break;
  }
}

std::optional<std::string> Coordinator::downloadDestination(const std::string& suggestion) {
  return host_.askSavePath(suggestedFileName(suggestion));
}

void Coordinator::runAlert(const std::string& message) {
  host_.showMessage(message, {"OK"});
}

bool Coordinator::runConfirm(const std::string& message) {
  return confirmAnswer(host_.showMessage(message, {"OK", "Cancel"}));
}

std::vector<std::string> Coordinator::runOpenPanel(bool allowsMultipleSelection,
                                                   bool allowsDirectories) {
  return host_.chooseFiles(uploadOptions(allowsMultipleSelection, allowsDirectories));
}

}  // namespace tarnwick
