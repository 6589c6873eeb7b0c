// The lines that two processes of the program exchange: whatever one receives, and whatever one has
// to say.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "app/wish.h"
#include "core/text/utf8.h"
#include "support/input.h"
#include "support/require.h"

using namespace tarnwick;
using fuzz::require;

namespace {

bool isOneLine(std::string_view line) {
  return line.ends_with('\n') && std::ranges::count(line, '\n') == 1;
}

void checkRequest(const Request& request) {
  const std::string line = requestLine(request);
  require(isOneLine(line) && line.size() <= longestRequest, "a request is one short line");
  const auto received = parseRequest(line);
  require(received && received->wish == request.wish, "the wish arrives");
  require(received->activationToken.empty() || received->activationToken == request.activationToken,
          "the token arrives whole or not at all");
}

void checkAnswer(const Answer& answer) {
  const std::string line = answerLine(answer);
  require(isOneLine(line) && line.size() <= longestAnswer, "an answer is one short line");
  require(wellFormedUtf8Prefix(line) == line.size() ||
              wellFormedUtf8Prefix(answer.text) != answer.text.size(),
          "no character of an answer is cut");
  const auto received = parseAnswer(line);
  require(received && received->code == answer.code, "the exit code arrives");
  std::string expected = answer.text;
  std::ranges::replace(expected, '\n', ' ');
  require(expected.starts_with(received->text), "the text arrives from its beginning");
  const bool isShort = answer.text.size() + 16 < longestAnswer;
  require(!isShort || received->text == expected, "a short text arrives whole");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const auto wish = static_cast<Wish>(input.byte() % 8U);
  const auto code = static_cast<ExitCode>(input.byte() % 4U);
  const std::size_t repeats = 1U + 64U * (input.byte() % 64U);
  const std::string received(input.rest());

  if (const auto request = parseRequest(received)) {
    const auto again = parseRequest(requestLine(*request));
    require(again && *again == *request, "a request that was read can be passed on");
  }
  if (const auto answer = parseAnswer(received)) checkAnswer(*answer);

  std::string text;
  for (std::size_t i = 0; i < repeats && text.size() < 2 * longestAnswer; ++i) text += received;
  checkRequest({wish, text});
  checkAnswer({code, text});
  return 0;
}
