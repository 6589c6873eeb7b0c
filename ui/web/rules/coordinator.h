#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ui/web/rules/challenge.h"
#include "ui/web/rules/page_requests.h"

namespace tarnwick {

/// What the coordinator asks of the web view. Main thread.
class WebViewPort {
 public:
  WebViewPort() = default;
  WebViewPort(const WebViewPort&) = delete;
  WebViewPort& operator=(const WebViewPort&) = delete;
  virtual ~WebViewPort() = default;

  /// Loads the address with the protocol's own caching; fails when nothing has come within `limit`.
  virtual void load(const std::string& url, std::chrono::seconds limit) = 0;
  virtual void reload() = 0;
  /// Reloads past all caches.
  virtual void reloadFromOrigin() = 0;
};

/// What the coordinator asks of the program around the view. Main thread; the dialogs are modal.
class WebHostPort : public CredentialSource {
 public:
  /// Runs `work` on the main thread after `delay`.
  virtual void after(std::chrono::milliseconds delay, std::function<void()> work) = 0;
  virtual void openInBrowser(const std::string& url) = 0;
  /// The path to save to, or nothing when the user cancelled.
  virtual std::optional<std::string> askSavePath(const std::string& suggestedName) = 0;
  /// The chosen paths, or none when the user cancelled.
  virtual std::vector<std::string> chooseFiles(UploadOptions options) = 0;
  /// The index of the button that closed the message, or nothing when it was closed otherwise.
  virtual std::optional<int> showMessage(const std::string& message,
                                         const std::vector<std::string>& buttons) = 0;
};

/// Answers every question that one web view asks. Created with the view and gone with it; what it
/// has scheduled then does nothing. Main thread only.
class Coordinator {
 public:
  static constexpr std::int64_t maximumRetries = 30;
  static constexpr std::chrono::seconds loadLimit{60};
  static constexpr std::chrono::milliseconds retryDelay{2000};

  enum class Retry { scheduled, givenUp };

  /// Both ports outlive the coordinator.
  Coordinator(WebViewPort& view, WebHostPort& host) : view_(view), host_(host) {}

  /// Loads the desktop for the first time; the token is the one that is already acted on.
  void start(const std::string& url, std::int64_t reloadToken);
  /// Reloads when the token differs from the last one, and begins to count retries anew.
  void update(std::int64_t reloadToken);

  /// The page could not be reached at all, for whatever reason.
  Retry navigationFailed();
  void navigationFinished() { retries_ = 0; }
  /// The navigation that was reported as failed last had become a download, so the page that shows
  /// is still the right one: takes the retry back.
  void navigationBecameDownload();

  [[nodiscard]] ChallengeAnswer answer(const Challenge& challenge) const;
  void openPopUp(const PopUp& popUp);
  [[nodiscard]] std::optional<std::string> downloadDestination(const std::string& suggestion);
  void runAlert(const std::string& message);
  [[nodiscard]] bool runConfirm(const std::string& message);
  [[nodiscard]] std::vector<std::string> runOpenPanel(bool allowsMultipleSelection,
                                                      bool allowsDirectories);

  [[nodiscard]] std::int64_t lastToken() const { return lastToken_; }
  /// Reloads scheduled since the last finished load or reload request, 0 to `maximumRetries`.
  [[nodiscard]] std::int64_t retries() const { return retries_; }

 private:
  Retry retryLater();

  WebViewPort& view_;
  WebHostPort& host_;
  std::int64_t lastToken_ = 0;
  std::int64_t retries_ = 0;
  /// One entry for each scheduled reload, which holds it weakly: without its entry it does nothing.
  std::vector<std::shared_ptr<const bool>> pending_;
  std::weak_ptr<const bool> latest_;
};

}  // namespace tarnwick
