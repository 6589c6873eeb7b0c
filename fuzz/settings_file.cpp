// The settings file, which people may edit. The first two lines are a key and a value to write; the
// rest is the file as it is found.
#include <algorithm>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "core/text/utf8.h"
#include "platform/json_key_value_store.h"
#include "support/input.h"
#include "support/require.h"
#include "support/scratch_folder.h"

using namespace tarnwick;
using fuzz::require;
using nlohmann::json;

namespace {

constexpr const char* file = "settings/settings.json";
constexpr const char* damagedFile = "settings/settings.json.bad";

const fuzz::ScratchFolder& scratch() {
  static const fuzz::ScratchFolder folder;
  return folder;
}

class Store {
 public:
  JsonKeyValueStore* operator->() { return &store_; }
  [[nodiscard]] int problems() const { return problems_; }

 private:
  int problems_ = 0;
  JsonKeyValueStore store_{scratch() / file, [this](const std::string& sentence) {
                             require(sentence.ends_with('.'), "a problem is told in a sentence");
                             ++problems_;
                           }};
};

json onDisk() {
  return json::parse(scratch().read(file), nullptr, false);
}

/// How deep brackets go in `text`, at most; those in strings count too.
std::size_t deepestBrackets(std::string_view text) {
  std::size_t depth = 0;
  std::size_t deepest = 0;
  for (const char c : text) {
    if (c == '{' || c == '[') deepest = std::max(deepest, ++depth);
    if ((c == '}' || c == ']') && depth > 0) --depth;
  }
  return deepest;
}

void checkReads(Store& store, const json& content, const std::string& key) {
  static const json missing;
  const json& value = content.contains(key) ? content.at(key) : missing;
  require(store->string(key).has_value() == value.is_string(), "text is read as text");
  require(!store->integer(key) || value == *store->integer(key), "a number is read as it is");
  require(store->boolean(key) == (value.is_boolean() && value == true), "a Boolean is read");
  const auto list = store->stringList(key);
  require(!list || value == *list, "a list is read as it is");
  if (store->string(key)) require(value == *store->string(key), "text is read as it is");
}

/// Writes one value of each kind under `key`, and looks whether everything else stays.
void checkWrites(Store& store, json content, const std::string& key, const std::string& value) {
  const std::string kept = decodeUtf8(value);
  const auto isWritten = [&](const json& expected) {
    content[key] = expected;
    require(onDisk() == content, "a write changes its value and no other");
    Store next;
    require(next.problems() == 0, "the next start finds a good file");
    checkReads(next, content, key);
  };
  store->setString(key, value);
  isWritten(kept);
  store->setInteger(key, static_cast<std::int64_t>(value.size()) - 7);
  isWritten(static_cast<std::int64_t>(value.size()) - 7);
  store->setStringList(key, {value, "", value});
  isWritten({kept, "", kept});
  store->setBoolean(key, true);
  isWritten(true);
  require(scratch().isPrivate(file), "the file is the user's alone");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  // The program's own keys are UTF-8.
  const std::string key = decodeUtf8(std::string(input.line()));
  const std::string value(input.line());
  const std::string found(input.rest());
  scratch().remove("settings");
  scratch().write(file, found);

  Store store;
  json content = json::parse(found, nullptr, false);
  const bool isGood = store.problems() == 0;
  if (deepestBrackets(found) < 100) {
    require(isGood == content.is_object(), "an object, and nothing else, is a good file");
  }
  if (isGood) {
    require(scratch().read(file) == found, "reading leaves a good file alone");
  } else {
    require(!scratch().exists(file) && scratch().read(damagedFile) == found,
            "a damaged file is kept beside");
    content = json::object();
  }
  for (const auto& member : content.items()) checkReads(store, content, member.key());
  checkReads(store, content, key);
  checkWrites(store, content, key, value);
  require(scratch().entries("settings") == (isGood ? 1 : 2), "nothing else is left in the folder");
  require(isGood || scratch().read(damagedFile) == found, "writing leaves what was kept alone");
  require(store.problems() == (isGood ? 0 : 1), "writing works");
  return 0;
}
