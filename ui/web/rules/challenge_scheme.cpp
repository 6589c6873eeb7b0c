#include "ui/web/rules/challenge_scheme.h"

#include <algorithm>
#include <cctype>
#include <optional>

namespace tarnwick {
namespace {

constexpr std::string_view blanks = " \t\r\n";

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The next element of a comma-separated list, in which quoted text may hold commas; removes it.
/// None, and the list stays, when a quote stands where no value begins or ends.
std::optional<std::string_view> takeElement(std::string_view& list) {
  enum class Place { outside, quoted, behindQuote } place = Place::outside;
  char before = '\0';  // the last character that is no blank
  std::size_t end = 0;
  for (; end < list.size(); ++end) {
    const char c = list[end];
    if (place == Place::quoted) {
      if (c == '"') place = Place::behindQuote;
      if (c == '\\') ++end;
      continue;
    }
    if (c == ',') break;
    if (blanks.find(c) != std::string_view::npos) continue;
    if (place == Place::behindQuote) return std::nullopt;
    if (c == '"') {
      if (before != '=') return std::nullopt;
      place = Place::quoted;
    }
    before = c;
  }
  if (place == Place::quoted) return std::nullopt;
  const std::string_view element = trimmed(list.substr(0, end));
  list.remove_prefix(std::min(end + 1, list.size()));
  return element;
}

/// The scheme that this element names, or nothing when it is a parameter of the scheme before it:
/// a parameter is a name followed by an equals sign.
std::string_view schemeIn(std::string_view element) {
  const auto end = element.find_first_of(" \t=");
  if (end == std::string_view::npos) return element;
  const std::string_view rest = trimmed(element.substr(end));
  return rest.starts_with('=') ? std::string_view{} : element.substr(0, end);
}

bool isBasic(std::string_view scheme) {
  constexpr std::string_view basic = "basic";
  return std::equal(scheme.begin(), scheme.end(), basic.begin(), basic.end(), [](char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) == b;
  });
}

}  // namespace

AuthenticationMethod challengeScheme(std::string_view wwwAuthenticate) {
  auto method = AuthenticationMethod::other;
  while (!wwwAuthenticate.empty()) {
    const auto element = takeElement(wwwAuthenticate);
    // What a stray quote swallows may be the scheme that the engine goes by.
    if (!element) return AuthenticationMethod::other;
    const std::string_view scheme = schemeIn(*element);
    if (scheme.empty()) continue;
    if (!isBasic(scheme)) return AuthenticationMethod::other;
    method = AuthenticationMethod::httpBasic;
  }
  return method;
}

}  // namespace tarnwick
