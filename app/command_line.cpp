#include "app/command_line.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace tarnwick {
namespace {

struct WishOption {
  std::string_view name;
  Wish wish;
};

constexpr std::array<WishOption, 6> wishOptions = {{
    {"--launch", Wish::launch},
    {"--background", Wish::background},
    {"--settings", Wish::settings},
    {"--logs", Wish::logs},
    {"--stop", Wish::stop},
    {"--status", Wish::status},
}};

// The toolkit's own, by name without dashes.
constexpr std::array<std::string_view, 15> toolkitValues = {
    "platform", "platformpluginpath", "platformtheme", "plugin",       "style",
    "session",  "stylesheet",         "display",       "geometry",     "qwindowgeometry",
    "icon",     "qwindowicon",        "title",         "qwindowtitle", "name"};
constexpr std::array<std::string_view, 5> toolkitFlags = {"reverse", "widgetcount", "nograb",
                                                          "dograb", "sync"};
// Those of the above that also take their value after an equals sign.
constexpr std::array<std::string_view, 2> toolkitEquals = {"style=", "stylesheet="};

enum class ToolkitOption { none, alone, withValue };

ToolkitOption toolkitOption(std::string_view argument) {
  if (!argument.starts_with('-')) return ToolkitOption::none;
  argument.remove_prefix(argument.starts_with("--") ? 2 : 1);
  if (std::ranges::find(toolkitValues, argument) != toolkitValues.end()) {
    return ToolkitOption::withValue;
  }
  const bool alone =
      std::ranges::find(toolkitFlags, argument) != toolkitFlags.end() ||
      std::ranges::any_of(toolkitEquals, [&](auto name) { return argument.starts_with(name); });
  return alone ? ToolkitOption::alone : ToolkitOption::none;
}

std::string quoted(std::string_view text) {
  return '"' + std::string(text) + '"';
}

const WishOption* findWish(std::string_view argument) {
  const auto* found = std::ranges::find(wishOptions, argument, &WishOption::name);
  return found == wishOptions.end() ? nullptr : found;
}

/// Takes the arguments one by one.
class Reader {
 public:
  /// The end of the reading, if this argument makes one.
  std::optional<CommandLine> take(const std::string& argument) {
    if (!needsValue_.empty()) {
      needsValue_.clear();
      return std::nullopt;
    }
    if (argument == "--help" || argument == "-h") return Information::help;
    if (argument == "--version") return Information::version;
    if (argument == "--json") {
      json_ = true;
      return std::nullopt;
    }
    if (const WishOption* option = findWish(argument)) return choose(*option);
    switch (toolkitOption(argument)) {
      case ToolkitOption::withValue:
        needsValue_ = argument;
        return std::nullopt;
      case ToolkitOption::alone:
        return std::nullopt;
      case ToolkitOption::none:
        break;
    }
    return WrongUse{argument.starts_with('-')
                        ? "There is no option " + quoted(argument) + "."
                        : "Nothing is known to do with " + quoted(argument) + "."};
  }

  [[nodiscard]] CommandLine finish() const {
    if (!needsValue_.empty()) return WrongUse{"The option " + needsValue_ + " needs a value."};
    const Wish wish = chosen_ ? chosen_->wish : Wish::open;
    if (!json_) return wish;
    if (wish != Wish::status) return WrongUse{"The option --json goes with --status only."};
    return Wish::statusJson;
  }

 private:
  std::optional<CommandLine> choose(const WishOption& option) {
    if (chosen_ && chosen_->wish != option.wish) {
      return WrongUse{"The options " + std::string(chosen_->name) + " and " +
                      std::string(option.name) + " exclude each other."};
    }
    chosen_ = option;
    return std::nullopt;
  }

  std::optional<WishOption> chosen_;
  bool json_ = false;
  std::string needsValue_;  ///< the option whose value comes next
};

}  // namespace

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
  Reader reader;
  for (const std::string& argument : arguments) {
    if (auto end = reader.take(argument)) return *std::move(end);
  }
  return reader.finish();
}

const char* helpText() {
  return R"(Usage: tarnwick [OPTION]

A complete Linux desktop in a window of your own computer. Without an option it opens its window.
When Tarnwick is running already, the option is passed on to the running program.

  --launch         open the window and press the main button
  --background     start without a window; where there is no tray, the window opens after all
  --settings       open the settings window
  --logs           open the logs window
  --stop           stop the desktop, or cancel its start, and wait until that is done
  --status         say in one line whether the desktop is running
  --status --json  the same as a JSON object
  --version        print the version
  -h, --help       print this text

--stop, --status, --version and --help need no display. --stop and --status start nothing.
The toolkit's options, such as -platform NAME and -style NAME, are understood too.

Exit codes:
  0  it is done; with --status, the desktop is running
  1  it could not be done; the reason is on standard error
  2  wrong use: an unknown option, or options that exclude each other
  3  with --status, the desktop is not running, which includes that it is just starting or stopping
)";
}

}  // namespace tarnwick
