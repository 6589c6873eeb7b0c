#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

/// A window that the page wants to open. The parts are as the engine understands the address.
struct PopUp {
  std::string url;
  std::string scheme;
  std::string host;
};

enum class PopUpDecision { ignore, loadInSameView, openInBrowser };

/// There is never a second view. Addresses that only the page itself could show, or that name files
/// of this computer, count as no address: nobody outside the view could or should open them.
[[nodiscard]] PopUpDecision decidePopUp(const PopUp& popUp);

enum class ResponsePolicy { allow, download };

[[nodiscard]] constexpr ResponsePolicy decideResponse(bool canShowMimeType) {
  return canShowMimeType ? ResponsePolicy::allow : ResponsePolicy::download;
}

/// The name that the save dialog starts with: the last part of the page's suggestion, without
/// folders and control characters, never empty, "." or "..".
[[nodiscard]] std::string suggestedFileName(std::string_view suggestion);

struct UploadOptions {
  bool canChooseFiles = true;
  bool canChooseDirectories = false;
  bool allowsMultipleSelection = false;
};

[[nodiscard]] constexpr UploadOptions uploadOptions(bool allowsMultipleSelection,
                                                    bool allowsDirectories) {
  return {true, allowsDirectories, allowsMultipleSelection};
}

enum class CaptureType { microphone, camera, both, screen };
enum class CaptureDecision { grant, deny };

/// Nothing in the desktop is given the user's microphone, camera or screen.
[[nodiscard]] constexpr CaptureDecision decideMediaCapture(std::string_view /*origin*/,
                                                           CaptureType /*type*/) {
  return CaptureDecision::deny;
}

/// The confirm dialog's buttons are "OK" and "Cancel"; `button` counts from 0, and nothing means
/// that the dialog was closed otherwise.
[[nodiscard]] constexpr bool confirmAnswer(std::optional<int> button) {
  return button == 0;
}

}  // namespace tarnwick
