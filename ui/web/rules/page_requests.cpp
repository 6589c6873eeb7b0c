#include "ui/web/rules/page_requests.h"

#include <algorithm>
#include <array>

#include "ui/web/rules/challenge.h"

namespace tarnwick {
namespace {

constexpr std::array<std::string_view, 9> schemesForNobodyElse = {
    "about", "blob", "chrome", "data", "devtools", "file", "filesystem", "javascript", "qrc"};

}  // namespace

PopUpDecision decidePopUp(const PopUp& popUp) {
  if (popUp.url.empty() ||
      std::ranges::find(schemesForNobodyElse, popUp.scheme) != schemesForNobodyElse.end())
    return PopUpDecision::ignore;
  return popUp.host == desktopHost ? PopUpDecision::loadInSameView : PopUpDecision::openInBrowser;
}

std::string suggestedFileName(std::string_view suggestion) {
  const auto slash = suggestion.find_last_of("/\\");
  if (slash != std::string_view::npos) suggestion.remove_prefix(slash + 1);
  std::string name(suggestion);
  std::erase_if(name, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; });
  if (name.empty() || name == "." || name == "..") return "download";
  return name;
}

}  // namespace tarnwick
