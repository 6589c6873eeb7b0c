#pragma once

#include <unistd.h>
#include <utility>

namespace tarnwick {

/// Owns one file descriptor, or none (-1).
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int number) : number_(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    if (this != &other) reset(std::exchange(other.number_, -1));
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() { reset(); }

  [[nodiscard]] int get() const { return number_; }
  [[nodiscard]] explicit operator bool() const { return number_ >= 0; }

  /// Hands the descriptor to the caller, who closes it.
  [[nodiscard]] int release() { return std::exchange(number_, -1); }

  void reset(int number = -1) {
    if (number_ >= 0) ::close(number_);
    number_ = number;
  }

 private:
  int number_ = -1;
};

}  // namespace tarnwick
