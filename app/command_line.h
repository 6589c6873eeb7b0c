#pragma once

#include <string>
#include <variant>
#include <vector>

#include "app/wish.h"

namespace tarnwick {

/// What the command line asks for.
enum class Information {
  help,    ///< print helpText()
  version  ///< print the program's version
};

/// Why the command line makes no sense: one sentence.
struct WrongUse {
  std::string sentence;

  bool operator==(const WrongUse&) const = default;
};

using CommandLine = std::variant<Wish, Information, WrongUse>;

/// Reads the arguments, without the program's own name. The toolkit's and the session manager's
/// options (-platform, -style, -session and the like) are let through, with one dash or two. Asking
/// for help or the version counts as soon as it is met, whatever follows.
[[nodiscard]] CommandLine parseCommandLine(const std::vector<std::string>& arguments);

/// The options and exit codes, for people.
[[nodiscard]] const char* helpText();

}  // namespace tarnwick
