#pragma once

#include <cstddef>
#include <string>
#include <utility>

namespace tarnwick {

enum class FileState {
  read,
  missing,     ///< nothing exists at the path
  tooLarge,    ///< a regular file of more bytes than were asked for
  unreadable,  ///< something is there that could not be read, or is no regular file
};

class FileContent {
 public:
  explicit FileContent(FileState how, std::string content = {}, std::string why = {})
      : state(how), bytes(std::move(content)), reason(std::move(why)) {}
  FileState state;
  std::string bytes;   ///< the whole content when `read`, else empty
  std::string reason;  ///< the system's reason when `unreadable`
};

/// Reads a regular file of at most `maxBytes` bytes. Never waits for a pipe or a device that has
/// the file's name. Any thread.
[[nodiscard]] FileContent readFile(const std::string& path, std::size_t maxBytes);

}  // namespace tarnwick
