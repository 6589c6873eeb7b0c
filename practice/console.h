#pragma once

#include <filesystem>
#include <string_view>
#include <sys/types.h>

namespace tarnwick::practice {

/// The line that begins every output which could pass for the real tool's work.
inline constexpr std::string_view kLabel =
    "Practice engine: nothing is really installed or downloaded.";

/// Write to standard output or standard error, unbuffered; say() and complain() add a line feed.
/// A reader that has gone away ends the process by SIGPIPE, as it ends the real tools.
void say(std::string_view line);
void complain(std::string_view line);
void write(std::string_view bytes);

/// Writes `block` again and again, until 1 GB or TARNWICK_PRACTICE_FLOOD_MB megabytes are written.
void flood(std::string_view block);

/// TARNWICK_PRACTICE_PACE: the factor for every pause, 0 to 100; 1 when unset or not a number.
double pace();

/// Waits `seconds` times pace().
void pauseFor(double seconds);

/// Waits `seconds` whatever the pace is.
void waitFor(double seconds);

/// Never answers: waits an hour, less if `folder` goes away, so that nothing outlives a test.
/// Leaves hangingMark() there, from which others see that it has come so far.
void hang(const std::filesystem::path& folder);

/// The empty file that process `pid` makes in `folder` once it hangs.
std::filesystem::path hangingMark(const std::filesystem::path& folder, pid_t pid);

/// SIGTERM and SIGINT end the process at once with 128 + signal, as they end the real tools.
void endOnSignals();

}  // namespace tarnwick::practice
