#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdlib.h>
#include <string>
#include <string_view>
#include <vector>

#include "support/require.h"

namespace tarnwick::fuzz {

/// A folder for the runs of one process, below TMPDIR. Removed at the end, unless that is a
/// finding.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "tarnwick-fuzz-XXXXXX").string();
    require(::mkdtemp(pattern.data()) != nullptr, "a temporary folder can be made");
    path_ = pattern;
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  [[nodiscard]] std::string operator/(std::string_view name) const {
    return path_ + "/" + std::string(name);
  }

  /// Removes a file, or a folder with all that is in it, if it is there.
  void remove(std::string_view name) const { std::filesystem::remove_all(*this / name); }

  /// Writes a file, with its missing folders.
  void write(std::string_view name, std::string_view content) const {
    const std::filesystem::path file = *this / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
  }

  /// The file's content; empty when there is none.
  [[nodiscard]] std::string read(std::string_view name) const {
    std::ifstream file(*this / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  [[nodiscard]] bool exists(std::string_view name) const {
    return std::filesystem::exists(*this / name);
  }

  /// Whether the user alone may read and write the file.
  [[nodiscard]] bool isPrivate(std::string_view name) const {
    return std::filesystem::status(*this / name).permissions() == std::filesystem::perms(0600);
  }

  /// How many files and folders are in the folder `name`.
  [[nodiscard]] std::ptrdiff_t entries(std::string_view name) const {
    return std::distance(std::filesystem::directory_iterator(*this / name), {});
  }

 private:
  std::string path_;
};

}  // namespace tarnwick::fuzz
