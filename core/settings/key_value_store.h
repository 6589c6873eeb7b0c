#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

/// Typed values of the current user that survive the program. Reads answer from memory and tell a
/// missing key and a value of another type alike: none. Writes are kept in memory at once and
/// reach the disk before the call returns, where the disk allows it. Main thread only.
class KeyValueStore {
 public:
  KeyValueStore() = default;
  KeyValueStore(const KeyValueStore&) = delete;
  KeyValueStore& operator=(const KeyValueStore&) = delete;
  virtual ~KeyValueStore() = default;

  [[nodiscard]] virtual std::optional<std::string> string(const std::string& key) const = 0;
  [[nodiscard]] virtual std::optional<std::int64_t> integer(const std::string& key) const = 0;
  /// A missing key reads as false.
  [[nodiscard]] virtual bool boolean(const std::string& key) const = 0;
  [[nodiscard]] virtual std::optional<std::vector<std::string>> stringList(
      const std::string& key) const = 0;

  virtual void setString(const std::string& key, const std::string& value) = 0;
  virtual void setInteger(const std::string& key, std::int64_t value) = 0;
  virtual void setBoolean(const std::string& key, bool value) = 0;
  virtual void setStringList(const std::string& key, const std::vector<std::string>& value) = 0;
};

}  // namespace tarnwick
