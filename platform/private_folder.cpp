#include "platform/private_folder.h"

#include <cerrno>
#include <sys/stat.h>
#include <system_error>

namespace tarnwick {

std::optional<std::string> createPrivateFolder(const std::string& path) {
  std::size_t end = 0;
  while (end != std::string::npos) {
    end = path.find('/', end + 1);
    const std::string part = path.substr(0, end);
    if (::mkdir(part.c_str(), 0700) == 0 || errno == EEXIST) continue;
    // A parent that exists may refuse in other words, e.g. on a read-only file system.
    const int error = errno;
    struct stat info {};
    if (::stat(part.c_str(), &info) != 0) return std::generic_category().message(error);
  }
  return std::nullopt;
}

}  // namespace tarnwick
