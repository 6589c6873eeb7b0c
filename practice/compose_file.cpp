#include "practice/compose_file.h"

#include <charconv>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <vector>

#include "practice/refusal.h"

namespace tarnwick::practice {
namespace {

using nlohmann::ordered_json;

struct Line {
  int number = 0;
  std::size_t indent = 0;
  std::string text;
};

[[noreturn]] void refuse(int line, std::string_view why) {
  throw Refusal(1, fmt::format("yaml: line {}: {}", line, why));
}

std::string trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \r");
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(" \r") - first + 1));
}

std::vector<Line> significantLines(std::string_view text) {
  std::vector<Line> lines;
  int number = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    ++number;
    const std::size_t indent = line.find_first_not_of(' ');
    if (indent == std::string_view::npos || line[indent] == '#' || trimmed(line).empty()) continue;
    if (line[indent] == '\t') refuse(number, "found character that cannot start any token");
    lines.push_back({number, indent, trimmed(line)});
  }
  return lines;
}

std::string scalar(const std::string& text, int line) {
  if (text.empty() || text.front() != '"') return text;
  std::string value;
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] == '"') {
      if (at + 1 != text.size()) refuse(line, "did not find expected key");
      return value;
    }
    if (text[at] == '\\') {
      ++at;
      if (at >= text.size() || (text[at] != '"' && text[at] != '\\')) {
        refuse(line, "found unknown escape character");
      }
    }
    value += text[at];
  }
  refuse(line, "found unexpected end of stream");
}

/// The colon that ends a key: followed by a space or the end, and not inside quotes.
std::size_t keyEnd(const std::string& text) {
  if (text.front() == '"') return std::string::npos;
  if (text.back() == ':')
    return text.find(": ") == std::string::npos ? text.size() - 1 : text.find(": ");
  return text.find(": ");
}

class Reader {
 public:
  explicit Reader(std::vector<Line> lines) : lines_(std::move(lines)) {}

  ordered_json read() {
    ordered_json root = block(0);
    if (at_ < lines_.size()) refuse(lines_[at_].number, "did not find expected key");
    return root;
  }

 private:
  ordered_json block(std::size_t least) {
    if (at_ >= lines_.size() || lines_[at_].indent < least) return nullptr;
    const std::size_t indent = lines_[at_].indent;
    return isItem(lines_[at_]) ? list(indent) : mapping(indent);
  }

  ordered_json list(std::size_t indent) {
    ordered_json items = ordered_json::array();
    while (at_ < lines_.size() && lines_[at_].indent == indent && isItem(lines_[at_])) {
      Line& line = lines_[at_];
      const std::string rest = trimmed(std::string_view(line.text).substr(1));
      if (rest.empty()) refuse(line.number, "empty list item");
      if (keyEnd(rest) == std::string::npos) {
        items.push_back(scalar(rest, line.number));
        ++at_;
      } else {
        // "- key: value" opens a mapping whose keys stand under the first one.
        line.indent += 2;
        line.text = rest;
        items.push_back(mapping(line.indent));
      }
    }
    return items;
  }

  ordered_json mapping(std::size_t indent) {
    ordered_json map = ordered_json::object();
    while (at_ < lines_.size() && lines_[at_].indent == indent && !isItem(lines_[at_])) {
      const Line line = lines_[at_];
      const std::size_t end = keyEnd(line.text);
      if (end == std::string::npos) refuse(line.number, "could not find expected ':'");
      const std::string key = line.text.substr(0, end);
      const std::string value = trimmed(std::string_view(line.text).substr(end + 1));
      if (map.contains(key)) {
        refuse(line.number, fmt::format("mapping key \"{}\" already defined", key));
      }
      ++at_;
      map[key] = value.empty() ? block(indent + 1) : ordered_json(scalar(value, line.number));
    }
    if (at_ < lines_.size() && lines_[at_].indent > indent) {
      refuse(lines_[at_].number, "mapping values are not allowed in this context");
    }
    return map;
  }

  static bool isItem(const Line& line) { return line.text == "-" || line.text.starts_with("- "); }

  std::vector<Line> lines_;
  std::size_t at_ = 0;
};

std::string textAt(const ordered_json& map, const char* key) {
  if (!map.is_object() || !map.contains(key) || !map[key].is_string()) return {};
  return map[key].get<std::string>();
}

void addMount(ContainerRequest& request, const ordered_json& mount, const ordered_json& volumes) {
  if (mount.is_object()) {
    if (textAt(mount, "type") != "bind")
      throw Refusal(1, "services.tarnwick.volumes: unknown type");
    request.sharePath = textAt(mount, "source");
    return;
  }
  mountVolume(request, mount.get<std::string>(), 1);
  const std::string named =
      volumes.is_object() && volumes.contains(request.volume)
          ? textAt(volumes[request.volume], "name")
          : throw Refusal(1, fmt::format("service \"{}\" refers to undefined volume {}: invalid "
                                         "compose project",
                                         request.name, request.volume));
  if (!named.empty()) request.volume = named;
}

const ordered_json& listAt(const ordered_json& map, const char* key) {
  static const ordered_json empty = ordered_json::array();
  if (!map.contains(key)) return empty;
  if (!map[key].is_array()) {
    throw Refusal(1, fmt::format("services.tarnwick.{} must be a list", key));
  }
  return map[key];
}

}  // namespace

ContainerRequest readComposeFile(std::string_view text, std::string project) {
  const ordered_json root = Reader(significantLines(text)).read();
  if (!root.is_object() || !root.contains("services") || !root["services"].is_object() ||
      root["services"].size() != 1 || !root["services"].begin()->is_object()) {
    throw Refusal(1, "Practice engine: a compose file with exactly one service is expected.");
  }
  const ordered_json& service = *root["services"].begin();
  const ordered_json& volumes = root.contains("volumes") ? root["volumes"] : ordered_json();
  ContainerRequest request;
  request.project = project.empty() ? textAt(root, "name") : std::move(project);
  request.name = textAt(service, "container_name");
  request.image = textAt(service, "image");
  if (request.image.empty()) {
    throw Refusal(1, fmt::format("service \"{}\" has neither an image nor a build context "
                                 "specified: invalid compose project",
                                 root["services"].begin().key()));
  }
  for (const auto& port : listAt(service, "ports")) publishPort(request, port, 1);
  for (const auto& variable : listAt(service, "environment")) addEnvironment(request, variable);
  for (const auto& mount : listAt(service, "volumes")) addMount(request, mount, volumes);
  return request;
}

void publishPort(ContainerRequest& request, const std::string& text, int status) {
  const std::size_t inner = text.rfind(':');
  constexpr std::string_view kHost = "127.0.0.1:";
  if (!text.starts_with(kHost) || inner < kHost.size()) {
    throw Refusal(status, fmt::format("Practice engine: port \"{}\" is not published on 127.0.0.1 "
                                      "only.",
                                      text));
  }
  const std::string outer = text.substr(kHost.size(), inner - kHost.size());
  int port = 0;
  const auto [end, error] = std::from_chars(outer.data(), outer.data() + outer.size(), port);
  if (error != std::errc() || end != outer.data() + outer.size()) {
    throw Refusal(status, fmt::format("invalid hostPort: {}", outer));
  }
  const std::string container = text.substr(inner + 1);
  if (container != "3000" && container != "3001") {
    throw Refusal(status, fmt::format("Practice engine: the image has no port {}.", container));
  }
  (container == "3000" ? request.httpPort : request.httpsPort) = port;
}

void mountVolume(ContainerRequest& request, const std::string& text, int status) {
  const std::size_t colon = text.rfind(':');
  const std::string source = text.substr(0, colon == std::string::npos ? 0 : colon);
  const std::string target = colon == std::string::npos ? "" : text.substr(colon + 1);
  if (source.starts_with('/') && !target.empty()) {
    request.sharePath = source;
  } else if (!source.empty() && target == "/config" &&
             source.find_first_of("/\\ ") == std::string::npos && source.front() != '.') {
    request.volume = source;
  } else {
    throw Refusal(status, fmt::format("invalid volume specification: \"{}\"", text));
  }
}

void addEnvironment(ContainerRequest& request, const std::string& text) {
  const std::string name = text.substr(0, text.find('='));
  const bool secret = name == "PASSWORD" || name == "CUSTOM_USER";
  request.environment.push_back(secret ? name : text);
}

}  // namespace tarnwick::practice
