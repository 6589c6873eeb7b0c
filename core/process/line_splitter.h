#pragma once

#include <string>
#include <string_view>

#include "core/process/streaming_process.h"

namespace tarnwick {

/// Cuts a tool's output into lines as it arrives. A line ends at each of U+000A to U+000D, U+0085,
/// U+2028 and U+2029; lines without characters are left out, so that a carriage return with a line
/// feed ends one line. One thread.
class LineSplitter {
 public:
  /// Takes the next chunk and passes on the lines that end in it, as well-formed UTF-8. The chunk
  /// is decoded by itself: a character that is cut by its end becomes replacement characters. The
  /// lines are gone after each call of `emit`.
  void feed(std::string_view chunk, const LineCallback& emit);

  /// Passes on the unfinished last line, if there is one.
  void flush(const LineCallback& emit);

 private:
  void split(std::string_view text, const LineCallback& emit);

  std::string pending_;  ///< the unfinished line; holds no line end
  std::string decoded_;
};

}  // namespace tarnwick
