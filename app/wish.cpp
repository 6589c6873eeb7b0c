#include "app/wish.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarnwick {
namespace {

constexpr std::array<std::pair<Wish, std::string_view>, 8> verbs = {{
    {Wish::open, "open"},
    {Wish::launch, "launch"},
    {Wish::background, "background"},
    {Wish::settings, "settings"},
    {Wish::logs, "logs"},
    {Wish::stop, "stop"},
    {Wish::status, "status"},
    {Wish::statusJson, "status-json"},
}};

constexpr std::size_t longestToken = 2048;

bool isToken(std::string_view text) {
  return text.size() <= longestToken &&
         std::ranges::all_of(text, [](char c) { return c > ' ' && c <= '~'; });
}

std::string_view withoutLineEnd(std::string_view line) {
  if (line.ends_with('\n')) line.remove_suffix(1);
  return line;
}

/// The part before the first space, and the rest behind it.
std::pair<std::string_view, std::string_view> split(std::string_view line) {
  const std::size_t space = line.find(' ');
  if (space == std::string_view::npos) return {line, {}};
  return {line.substr(0, space), line.substr(space + 1)};
}

/// The largest end up to `limit`, which is below the size, where no UTF-8 character is cut.
std::size_t endOfCharacters(std::string_view text, std::size_t limit) {
  while (limit > 0 && (static_cast<unsigned char>(text[limit]) & 0xC0U) == 0x80U) --limit;
  return limit;
}

}  // namespace

std::string requestLine(const Request& request) {
  std::string line;
  for (const auto& [wish, verb] : verbs) {
    if (wish == request.wish) line = verb;
  }
  if (!request.activationToken.empty() && isToken(request.activationToken)) {
    line += ' ' + request.activationToken;
  }
  return line + '\n';
}

std::optional<Request> parseRequest(std::string_view line) {
  const auto [word, token] = split(withoutLineEnd(line));
  const auto found = std::ranges::find(verbs, word, [](const auto& entry) { return entry.second; });
  if (found == verbs.end() || !isToken(token)) return std::nullopt;
  return Request{found->first, std::string(token)};
}

std::string answerLine(const Answer& answer) {
  std::string line = std::to_string(static_cast<int>(answer.code)) + ' ' + answer.text;
  std::ranges::replace(line, '\n', ' ');
  if (line.size() >= longestAnswer) line.resize(endOfCharacters(line, longestAnswer - 1));
  return line + '\n';
}

std::optional<Answer> parseAnswer(std::string_view line) {
  const auto [number, text] = split(withoutLineEnd(line));
  if (number.size() != 1 || number[0] < '0' || number[0] > '3') return std::nullopt;
  return Answer{static_cast<ExitCode>(number[0] - '0'), std::string(text)};
}

}  // namespace tarnwick
