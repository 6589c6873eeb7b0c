#pragma once

#include <filesystem>
#include <fstream>
#include <stdlib.h>
#include <string>

namespace tarnwick {

/// An empty folder of its own for one test, removed with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder() : TemporaryFolder(std::filesystem::temp_directory_path()) {}
  explicit TemporaryFolder(const std::filesystem::path& parent) {
    std::string pattern = (parent / "tarnwick-XXXXXX").string();
    path_ = ::mkdtemp(pattern.data());
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::string operator/(const std::string& name) const { return path_ + "/" + name; }

  /// Writes a file, with its missing folders, and gives its full path.
  std::string write(const std::string& name, const std::string& content,
                    std::filesystem::perms mode = std::filesystem::perms(0644)) const {
    const std::filesystem::path file = std::filesystem::path(path_) / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    std::filesystem::permissions(file, mode);
    return file.string();
  }

 private:
  std::string path_;
};

}  // namespace tarnwick
