#include "core/files/read_file.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tarnwick {
namespace {

FileContent unreadable(int error) {
  return FileContent(FileState::unreadable, {}, std::generic_category().message(error));
}

FileContent readOpened(int file, std::size_t maxBytes) {
  struct stat info {};
  if (::fstat(file, &info) != 0) return unreadable(errno);
  if (S_ISDIR(info.st_mode)) return unreadable(EISDIR);
  if (!S_ISREG(info.st_mode)) return unreadable(EINVAL);
  const auto announced = static_cast<std::size_t>(info.st_size);
  if (announced > maxBytes) return FileContent(FileState::tooLarge);

  // The announced size is a hint: the file may grow meanwhile, and some have none until read.
  std::string bytes;
  std::size_t length = 0;
  for (;;) {
    bytes.resize(std::max(announced + 1, length + 4096));
    const ssize_t count = ::read(file, bytes.data() + length, bytes.size() - length);
    if (count < 0) {
      if (errno == EINTR) continue;
      return unreadable(errno);
    }
    if (count == 0) break;
    length += static_cast<std::size_t>(count);
    if (length > maxBytes) return FileContent(FileState::tooLarge);
  }
  bytes.resize(length);
  return FileContent(FileState::read, std::move(bytes));
}

}  // namespace

FileContent readFile(const std::string& path, std::size_t maxBytes) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (file < 0) {
    const bool missing = errno == ENOENT || errno == ENOTDIR;
    return missing ? FileContent(FileState::missing) : unreadable(errno);
  }
  FileContent content = readOpened(file, maxBytes);
  ::close(file);
  return content;
}

}  // namespace tarnwick
