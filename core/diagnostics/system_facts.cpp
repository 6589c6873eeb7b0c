#include "core/diagnostics/system_facts.h"

#include <cstdlib>
#include <sstream>
#include <string_view>
#include <sys/utsname.h>

#include "core/files/read_file.h"

namespace tarnwick {
namespace {

std::string distribution() {
  constexpr std::size_t largest = 64U << 10U;
  constexpr std::string_view key = "PRETTY_NAME=";
  const FileContent content = readFile("/etc/os-release", largest);
  std::istringstream lines(content.bytes);
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with(key)) continue;
    std::string name = line.substr(key.size());
    std::erase(name, '"');
    return name;
  }
  return "unknown";
}

std::string kernel() {
  utsname names{};
  if (::uname(&names) != 0) return "unknown";
  return std::string(names.sysname) + " " + names.release + ", " + names.machine;
}

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0' ? value : "not set";
}

}  // namespace

Facts systemFacts() {
  Facts facts;
  facts.emplace_back("System", distribution());
  facts.emplace_back("Kernel", kernel());
  for (const char* name : {"XDG_SESSION_TYPE", "XDG_CURRENT_DESKTOP", "LANG",
                           "TARNWICK_TOOL_FOLDERS", "TARNWICK_IMAGE_REGISTRY"}) {
    facts.emplace_back(name, variable(name));
  }
  return facts;
}

}  // namespace tarnwick
