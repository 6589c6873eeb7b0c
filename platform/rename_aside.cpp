#include "platform/rename_aside.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>

namespace tarnwick {
namespace {

/// Gives 0 or an error number; EEXIST when `to` is taken.
int renameWithoutReplacing(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  // The file system has no such rename.
  struct stat info {};
  if (::lstat(to.c_str(), &info) == 0) return EEXIST;
  return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

}  // namespace

MovedAside renameAside(const std::string& path) {
  constexpr int mostNames = 1000;
  MovedAside result;
  int error = EEXIST;
  for (int i = 0; i < mostNames && error == EEXIST; ++i) {
    const std::string candidate = path + ".bad" + (i == 0 ? "" : std::to_string(i));
    error = renameWithoutReplacing(path, candidate);
    if (error == 0) result.newPath = candidate;
  }
  if (error != 0) result.reason = std::generic_category().message(error);
  return result;
}

}  // namespace tarnwick
