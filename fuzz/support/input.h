#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::fuzz {

/// The bytes of one run, taken from the front. Lines make the seeds files that people can read.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : left_(reinterpret_cast<const char*>(data), size) {}

  /// What is left up to the next line feed, which is taken too.
  std::string_view line() {
    const std::string_view taken = left_.substr(0, left_.find('\n'));
    left_.remove_prefix(std::min(left_.size(), taken.size() + 1));
    return taken;
  }

  /// The next byte; 0 when none is left.
  unsigned char byte() {
    if (left_.empty()) return 0;
    const auto taken = static_cast<unsigned char>(left_.front());
    left_.remove_prefix(1);
    return taken;
  }

  /// All that is left.
  std::string_view rest() {
    const std::string_view taken = left_;
    left_ = {};
    return taken;
  }

  [[nodiscard]] bool empty() const { return left_.empty(); }

  std::vector<std::string> remainingLines() {
    std::vector<std::string> lines;
    while (!empty()) lines.emplace_back(line());
    return lines;
  }

 private:
  std::string_view left_;
};

}  // namespace tarnwick::fuzz
