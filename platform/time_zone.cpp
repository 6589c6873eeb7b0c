#include "platform/time_zone.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <sys/stat.h>

#include "core/files/atomic_file.h"
#include "core/files/read_file.h"

namespace tarnwick {
namespace {

bool isNameCharacter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '-' || c == '+' || c == '/';
}

/// Names have no dots, so none leads out of the zones' folder.
bool isZone(const std::string& name, const std::string& zonesFolder) {
  constexpr std::size_t longestName = 100;
  if (name.empty() || name.size() > longestName || name.front() == '/' || name.back() == '/' ||
      !std::all_of(name.begin(), name.end(), &isNameCharacter)) {
    return false;
  }
  struct stat info {};
  if (::stat(zonesFolder.c_str(), &info) != 0) return true;
  return ::stat((zonesFolder + "/" + name).c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

/// What follows the zones' folder in a path: distributions keep it in different places.
std::string nameInPath(const std::string& path) {
  constexpr std::string_view marker = "/zoneinfo/";
  const std::size_t at = path.rfind(marker);
  if (at == std::string::npos) return "";
  std::string name = path.substr(at + marker.size());
  for (const std::string_view variant : {"posix/", "right/"}) {
    if (name.starts_with(variant)) name.erase(0, variant.size());
  }
  return name;
}

std::string nameInVariable(std::string value) {
  if (value.starts_with(':')) value.erase(0, 1);
  return value.starts_with('/') ? nameInPath(value) : value;
}

std::string firstLine(const std::string& path) {
  constexpr std::size_t largest = 4096;
  const std::string text = readFile(path, largest).bytes;
  const std::size_t end = text.find_first_of(" \t\r\n");
  return text.substr(0, end);
}

}  // namespace

std::string timeZoneName(const TimeZoneSources& sources) {
  // The link comes before the file: it is what the C library reads, and some systems have stopped
  // to keep the file up to date.
  const std::string candidates[] = {nameInVariable(sources.variable.value_or("")),
                                    nameInPath(followLinks(sources.localtimeLink)),
                                    firstLine(sources.nameFile)};
  for (const std::string& name : candidates) {
    if (isZone(name, sources.zonesFolder)) return name;
  }
  return "Etc/UTC";
}

std::string currentTimeZoneName() {
  TimeZoneSources sources;
  if (const char* value = std::getenv("TZ")) sources.variable = value;
  return timeZoneName(sources);
}

}  // namespace tarnwick
