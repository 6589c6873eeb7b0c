#include "platform/json_key_value_store.h"

#include <filesystem>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <system_error>
#include <utility>

#include "core/files/atomic_file.h"
#include "core/files/read_file.h"
#include "platform/private_folder.h"
#include "platform/rename_aside.h"

namespace tarnwick {
namespace {

using Json = nlohmann::json;

constexpr std::size_t largestFile = 16U << 20U;
/// Writing walks the values recursively; people nest settings a few levels deep at most.
constexpr int deepestNesting = 100;

/// The object in `text`, or none when there is none.
std::optional<Json> parseObject(const std::string& text) {
  bool tooDeep = false;
  const auto watchDepth = [&tooDeep](int depth, Json::parse_event_t, Json&) {
    if (depth > deepestNesting) tooDeep = true;
    return !tooDeep;
  };
  Json parsed = Json::parse(text, watchDepth, false);
  if (tooDeep || !parsed.is_object()) return std::nullopt;
  return parsed;
}

}  // namespace

struct JsonKeyValueStore::Values {
  Json object = Json::object();

  [[nodiscard]] const Json* find(const std::string& key) const {
    const auto found = object.find(key);
    return found == object.end() ? nullptr : &*found;
  }
};

JsonKeyValueStore::JsonKeyValueStore(std::string path, ProblemHandler onProblem)
    : path_(std::move(path)), onProblem_(std::move(onProblem)), values_(new Values) {
  load();
}

JsonKeyValueStore::~JsonKeyValueStore() = default;

void JsonKeyValueStore::load() {
  const FileContent content = readFile(path_, largestFile);
  switch (content.state) {
    case FileState::missing:
      return;
    case FileState::unreadable:
      onDisk_ = OnDisk::leftAlone;
      onProblem_(
          fmt::format("The settings file {} cannot be read ({}), so the default settings "
                      "are used and changes are lost when Tarnwick quits.",
                      path_, content.reason));
      return;
    case FileState::tooLarge:
      moveDamagedAside();
      return;
    case FileState::read:
      break;
  }
  if (std::optional<Json> object = parseObject(content.bytes)) {
    values_->object = std::move(*object);
  } else {
    moveDamagedAside();
  }
}

void JsonKeyValueStore::moveDamagedAside() {
  const MovedAside moved = renameAside(followLinks(path_));
  if (moved.newPath) {
    onProblem_(
        fmt::format("The settings file was damaged: it is kept as {}, and the default "
                    "settings are used.",
                    *moved.newPath));
    return;
  }
  onDisk_ = OnDisk::leftAlone;
  onProblem_(
      fmt::format("The settings file {} is damaged and cannot be moved aside ({}), so the "
                  "default settings are used and changes are lost when Tarnwick quits.",
                  path_, moved.reason));
}

void JsonKeyValueStore::save() {
  if (onDisk_ == OnDisk::leftAlone) return;
  // Text that is not UTF-8 must not cost the user all other settings.
  const std::string text =
      values_->object.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
  const std::string folder = std::filesystem::path(path_).parent_path().string();
  std::optional<std::string> failure = createPrivateFolder(folder);
  if (!failure) failure = writeFileAtomically(path_, text, 0600);
  if (!failure) {
    failureTold_ = false;
    return;
  }
  if (std::exchange(failureTold_, true)) return;
  onProblem_(
      fmt::format("The settings cannot be saved ({}), so changes are lost when Tarnwick "
                  "quits.",
                  *failure));
}

std::optional<std::string> JsonKeyValueStore::string(const std::string& key) const {
  const Json* value = values_->find(key);
  if (value == nullptr || !value->is_string()) return std::nullopt;
  return value->get<std::string>();
}

std::optional<std::int64_t> JsonKeyValueStore::integer(const std::string& key) const {
  const Json* value = values_->find(key);
  if (value == nullptr || !value->is_number_integer()) return std::nullopt;
  if (value->is_number_unsigned() && !std::in_range<std::int64_t>(value->get<std::uint64_t>())) {
    return std::nullopt;
  }
  return value->get<std::int64_t>();
}

bool JsonKeyValueStore::boolean(const std::string& key) const {
  const Json* value = values_->find(key);
  return value != nullptr && value->is_boolean() && value->get<bool>();
}

std::optional<std::vector<std::string>> JsonKeyValueStore::stringList(
    const std::string& key) const {
  const Json* value = values_->find(key);
  if (value == nullptr || !value->is_array()) return std::nullopt;
  std::vector<std::string> list;
  for (const Json& element : *value) {
    if (!element.is_string()) return std::nullopt;
    list.push_back(element.get<std::string>());
  }
  return list;
}

void JsonKeyValueStore::setString(const std::string& key, const std::string& value) {
  values_->object[key] = value;
  save();
}

void JsonKeyValueStore::setInteger(const std::string& key, std::int64_t value) {
  values_->object[key] = value;
  save();
}

void JsonKeyValueStore::setBoolean(const std::string& key, bool value) {
  values_->object[key] = value;
  save();
}

void JsonKeyValueStore::setStringList(const std::string& key,
                                      const std::vector<std::string>& value) {
  values_->object[key] = value;
  save();
}

}  // namespace tarnwick
