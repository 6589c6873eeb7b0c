#include "platform/xdg_login_item.h"

#include <cstdlib>
#include <fmt/format.h>
#include <map>
#include <sstream>
#include <string_view>
#include <unistd.h>
#include <utility>

#include "core/files/atomic_file.h"
#include "core/files/read_file.h"
#include "platform/private_folder.h"

namespace tarnwick {
namespace {

constexpr std::size_t largestEntry = 256U << 10U;
constexpr const char* switchKey = "X-GNOME-Autostart-enabled";

/// A text as the value of a key: every value of such a file is escaped this way.
std::string escaped(const std::string& text) {
  std::string value;
  for (const char c : text) {
    switch (c) {
      case '\\':
        value += "\\\\";
        break;
      case '\n':
        value += "\\n";
        break;
      case '\r':
        value += "\\r";
        break;
      case '\t':
        value += "\\t";
        break;
      default:
        value += c;
    }
  }
  return value;
}

/// A program's path as the first word of a command line: quoted, and its percent signs kept from
/// being field codes.
std::string commandWord(const std::string& program) {
  constexpr std::string_view special = "\"`$\\";
  std::string word = "\"";
  for (const char c : program) {
    if (special.find(c) != std::string_view::npos) word += '\\';
    word += c;
    if (c == '%') word += c;
  }
  return word + '"';
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The keys of the file's main group.
std::map<std::string, std::string> parseEntry(const std::string& text) {
  std::map<std::string, std::string> values;
  bool inMainGroup = false;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const std::string_view content = trimmed(line);
    if (content.starts_with('[')) inMainGroup = content == "[Desktop Entry]";
    const std::size_t equals = content.find('=');
    if (!inMainGroup || content.starts_with('#') || equals == std::string_view::npos) continue;
    values.emplace(trimmed(content.substr(0, equals)), trimmed(content.substr(equals + 1)));
  }
  return values;
}

/// Whether a list of an entry ("GNOME;XFCE;") names one of the desktops of this session.
bool namesThisDesktop(const std::string& list) {
  const char* desktops = std::getenv("XDG_CURRENT_DESKTOP");
  std::istringstream present(desktops != nullptr ? desktops : "");
  for (std::string desktop; std::getline(present, desktop, ':');) {
    std::istringstream named(list);
    for (std::string name; std::getline(named, name, ';');) {
      if (!name.empty() && name == desktop) return true;
    }
  }
  return false;
}

}  // namespace

XdgLoginItem::XdgLoginItem(const std::string& configFolder, std::string program)
    : folder_(configFolder + "/autostart"),
      path_(folder_ + "/tarnwick.desktop"),
      program_(std::move(program)) {}

void XdgLoginItem::registerItem() {
  // TryExec keeps a session from complaining once the program has been removed.
  const std::string entry = fmt::format(
      "[Desktop Entry]\n"
      "Type=Application\n"
      "Name=Tarnwick\n"
      "Comment=A Linux desktop in a window\n"
      "Exec={} --background\n"
      "TryExec={}\n"
      "Icon=tarnwick\n"
      "Terminal=false\n"
      "{}=true\n",
      escaped(commandWord(program_)), escaped(program_), switchKey);
  if (createPrivateFolder(folder_)) return;
  [[maybe_unused]] const auto failure = writeFileAtomically(path_, entry, 0644);
}

void XdgLoginItem::unregisterItem() {
  ::unlink(path_.c_str());
}

bool XdgLoginItem::isEnabled() const {
  const FileContent content = readFile(path_, largestEntry);
  if (content.state != FileState::read) return false;
  const std::map<std::string, std::string> values = parseEntry(content.bytes);
  const auto is = [&values](const char* key, std::string_view value) {
    const auto found = values.find(key);
    return found != values.end() && found->second == value;
  };
  if (!values.contains("Exec") || is("Hidden", "true") || is(switchKey, "false")) return false;
  // Some desktops' tools switch an entry off for themselves alone.
  const auto onlyIn = values.find("OnlyShowIn");
  const auto notIn = values.find("NotShowIn");
  return (onlyIn == values.end() || namesThisDesktop(onlyIn->second)) &&
         (notIn == values.end() || !namesThisDesktop(notIn->second));
}

}  // namespace tarnwick
