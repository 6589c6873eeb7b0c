#include "core/files/atomic_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tarnwick {
namespace {

std::string reasonOf(int error) {
  return std::generic_category().message(error);
}

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

/// The steps give 0 or an error number.
int writeAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0) {
      if (errno == EINTR) continue;
      return errno;
    }
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

int syncToDisk(int file) {
  while (::fsync(file) != 0) {
    if (errno == EINTR) continue;
    // Some file systems have nothing to flush and say so in this way.
    return errno == EINVAL ? 0 : errno;
  }
  return 0;
}

/// Linux frees the descriptor also when it reports an interruption; a full disk may show only here.
int closeFile(int file) {
  if (::close(file) != 0 && errno != EINTR) return errno;
  return 0;
}

int syncFolder(const std::string& folder) {
  const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0) return errno;
  const int error = syncToDisk(handle);
  ::close(handle);
  return error;
}

int fillFile(int file, std::string_view bytes, mode_t mode) {
  if (::fchmod(file, mode) != 0) return errno;
  if (const int error = writeAll(file, bytes)) return error;
  return syncToDisk(file);
}

}  // namespace

std::string followLinks(const std::string& path) {
  std::string current = path;
  constexpr int mostLinks = 40;  // as many as the kernel follows
  for (int i = 0; i < mostLinks; ++i) {
    std::vector<char> buffer(4096);
    const ssize_t length = ::readlink(current.c_str(), buffer.data(), buffer.size());
    if (length < 0) return current;
    std::string target(buffer.data(), static_cast<std::size_t>(length));
    if (!target.starts_with('/')) target.insert(0, folderOf(current) + "/");
    current = std::move(target);
  }
  return path;
}

std::optional<std::string> writeFileAtomically(const std::string& path, std::string_view bytes,
                                               mode_t mode) {
  const std::string target = followLinks(path);
  std::string temporary = target + ".XXXXXX";
  const int file = ::mkostemp(temporary.data(), O_CLOEXEC);
  if (file < 0) return reasonOf(errno);

  int error = fillFile(file, bytes, mode);
  const int closeError = closeFile(file);
  if (error == 0) error = closeError;
  if (error == 0 && ::rename(temporary.c_str(), target.c_str()) != 0) error = errno;
  if (error != 0) {
    ::unlink(temporary.c_str());
    return reasonOf(error);
  }
  if (const int folderError = syncFolder(folderOf(target))) return reasonOf(folderError);
  return std::nullopt;
}

}  // namespace tarnwick
