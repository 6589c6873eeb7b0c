// Arguments, one a line.
#include "app/command_line.h"

#include <cstdint>
#include <string>
#include <vector>

#include "support/input.h"
#include "support/require.h"

using namespace tarnwick;
using fuzz::require;

namespace {

CommandLine parseWith(std::vector<std::string> arguments, const std::vector<std::string>& more) {
  arguments.insert(arguments.end(), more.begin(), more.end());
  return parseCommandLine(arguments);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::vector<std::string> arguments = input.remainingLines();
  const CommandLine answer = parseCommandLine(arguments);

  if (const auto* wrong = std::get_if<WrongUse>(&answer)) {
    require(wrong->sentence.ends_with('.'), "wrong use is told in a sentence");
  } else if (std::holds_alternative<Information>(answer)) {
    require(parseWith(arguments, {"--nonsense"}) == answer, "help wins over what follows");
  } else {
    require(parseWith(arguments, arguments) == answer, "saying it twice changes nothing");
    require(parseWith(arguments, {"-style", "--help", "--nograb"}) == answer,
            "the toolkit's options change nothing");
    require(parseWith(arguments, {"--help"}) == CommandLine(Information::help),
            "help can be asked for behind everything that makes sense");
    require(std::holds_alternative<WrongUse>(parseWith(arguments, {"--nonsense"})),
            "what is unknown is told");
  }
  require(parseWith({"-style", "x", "--stylesheet=y"}, arguments) == answer,
          "the toolkit's options before the others change nothing");
  return 0;
}
