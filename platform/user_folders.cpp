#include "platform/user_folders.h"

#include <cerrno>
#include <cstdlib>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace tarnwick {
namespace {

/// The variable's value when it is an absolute path; others are to be ignored.
std::string absolutePathIn(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value == '/' ? value : "";
}

std::string homeOfAccount() {
  std::vector<char> buffer(1024);
  struct passwd entry {};
  struct passwd* found = nullptr;
  int error = 0;
  while ((error = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found)) != 0) {
    constexpr std::size_t enough = 1U << 20U;
    if (error != EINTR && (error != ERANGE || buffer.size() >= enough)) return "";
    if (error == ERANGE) buffer.resize(buffer.size() * 2);
  }
  const bool named = found != nullptr && entry.pw_dir != nullptr && *entry.pw_dir == '/';
  return named ? entry.pw_dir : "";
}

/// The base directory rules name $HOME for their defaults, not the account's home.
std::string baseFolder(const char* variable, const char* belowHome) {
  std::string folder = absolutePathIn(variable);
  if (!folder.empty()) return folder;
  std::string home = absolutePathIn("HOME");
  if (home.empty()) home = userHomeFolder();
  return home + belowHome;
}

}  // namespace

std::string userHomeFolder() {
  std::string home = homeOfAccount();
  if (home.empty()) home = absolutePathIn("HOME");
  return home.empty() ? "/" : home;
}

std::string userConfigFolder() {
  return baseFolder("XDG_CONFIG_HOME", "/.config");
}

std::string userDataFolder() {
  return baseFolder("XDG_DATA_HOME", "/.local/share");
}

}  // namespace tarnwick
