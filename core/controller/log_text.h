#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// The accumulated tool output of one run, bounded: whenever it passes 80,000 bytes it is cut to
/// its last 50,000 user-perceived characters. The characters are counted as lines come and go, so
/// that an append costs the same however long the log is.
class LogText {
 public:
  static constexpr std::size_t maxBytes = 80'000;
  static constexpr std::size_t keptCharacters = 50'000;

  /// Appends UTF-8 text and a line feed.
  void appendLine(std::string_view line);

  [[nodiscard]] std::string_view text() const { return std::string_view(buffer_).substr(start_); }
  [[nodiscard]] bool empty() const { return buffer_.size() == start_; }

  /// How many bytes were ever appended; text() holds the last of them. A view that remembers this
  /// number appends only what is new.
  [[nodiscard]] std::uint64_t appendedBytes() const { return appended_; }

  /// The last `count` non-empty lines in their order. They view into the log.
  [[nodiscard]] std::vector<std::string_view> tail(std::size_t count) const;

 private:
  void dropCharacters(std::size_t count);

  std::string buffer_;
  std::size_t start_ = 0;
  std::size_t characters_ = 0;
  std::uint64_t appended_ = 0;
};

}  // namespace tarnwick
