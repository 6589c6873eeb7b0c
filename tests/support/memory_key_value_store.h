#pragma once

#include <map>
#include <string>
#include <variant>
#include <vector>

#include "core/settings/key_value_store.h"

namespace tarnwick {

/// Settings in memory; `writes` names the key of each write in order.
class MemoryKeyValueStore final : public KeyValueStore {
 public:
  using Value = std::variant<std::string, std::int64_t, bool, std::vector<std::string>>;

  std::map<std::string, Value> values;
  std::vector<std::string> writes;

  [[nodiscard]] std::optional<std::string> string(const std::string& key) const override {
    return get<std::string>(key);
  }
  [[nodiscard]] std::optional<std::int64_t> integer(const std::string& key) const override {
    return get<std::int64_t>(key);
  }
  [[nodiscard]] bool boolean(const std::string& key) const override {
    return get<bool>(key).value_or(false);
  }
  [[nodiscard]] std::optional<std::vector<std::string>> stringList(
      const std::string& key) const override {
    return get<std::vector<std::string>>(key);
  }

  void setString(const std::string& key, const std::string& value) override { put(key, value); }
  void setInteger(const std::string& key, std::int64_t value) override { put(key, value); }
  void setBoolean(const std::string& key, bool value) override { put(key, value); }
  void setStringList(const std::string& key, const std::vector<std::string>& value) override {
    put(key, value);
  }

 private:
  template <typename T>
  [[nodiscard]] std::optional<T> get(const std::string& key) const {
    const auto found = values.find(key);
    const T* value = found == values.end() ? nullptr : std::get_if<T>(&found->second);
    return value == nullptr ? std::nullopt : std::optional<T>(*value);
  }
  void put(const std::string& key, Value value) {
    writes.push_back(key);
    values.insert_or_assign(key, std::move(value));
  }
};

}  // namespace tarnwick
