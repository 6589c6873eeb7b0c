#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace tarnwick {

/// Collects output of any size. Long output is kept where it is instead of being copied again and
/// again, in large pages where the system has them: most of the cost of 100 MB is getting pages.
class OutputBuffer {
 public:
  void append(std::string_view bytes) {
    if (bytes.size() > bytes_.capacity() - bytes_.size()) makeRoom(bytes.size());
    bytes_.append(bytes);
  }

  [[nodiscard]] std::string take() { return std::exchange(bytes_, {}); }

 private:
  void makeRoom(std::size_t more);
  std::string bytes_;
};

}  // namespace tarnwick
