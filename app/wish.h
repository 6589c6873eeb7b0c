#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tarnwick {

/// What a start of the program is for.
enum class Wish {
  open,        ///< the main window
  launch,      ///< the main window, and a press of its main button
  background,  ///< no window
  settings,    ///< the settings window
  logs,        ///< the logs window
  stop,        ///< end the desktop, and say how that went
  status,      ///< one line on the desktop
  statusJson   ///< the same for programs
};

/// A wish on its way to the process that fulfils it.
struct Request {
  Wish wish = Wish::open;
  /// What the desktop gave this start so that its window may come to the front; may be empty.
  std::string activationToken;

  bool operator==(const Request&) const = default;
};

/// How the program ends.
enum class ExitCode : int {
  done = 0,
  failed = 1,      ///< it could not be done; the reason is on standard error
  wrongUse = 2,    ///< the command line makes no sense
  notRunning = 3,  ///< the answer to a question for the status: no desktop is running
};

/// What came of a wish.
struct Answer {
  Answer() = default;
  Answer(ExitCode itsCode, std::string itsText) : code(itsCode), text(std::move(itsText)) {}
  ExitCode code = ExitCode::done;
  std::string text;  ///< one line without its end; may be empty

  bool operator==(const Answer&) const = default;
};

// Both travel as one line of text, at most this long with its line feed.
inline constexpr std::size_t longestRequest = 4096;
inline constexpr std::size_t longestAnswer = 16384;

/// Sent before an answer that may take long, to show that somebody is at work on it.
inline constexpr std::string_view workingLine = "working\n";

/// The request as a line. A token that is too long or not made of visible ASCII is left out.
[[nodiscard]] std::string requestLine(const Request& request);
/// Reads such a line, with or without its line feed; none when it is not one.
[[nodiscard]] std::optional<Request> parseRequest(std::string_view line);

/// The answer as a line; line breaks in its text become spaces, and a text that is too long is cut.
[[nodiscard]] std::string answerLine(const Answer& answer);
/// Reads such a line, with or without its line feed; none when it is not one.
[[nodiscard]] std::optional<Answer> parseAnswer(std::string_view line);

}  // namespace tarnwick
