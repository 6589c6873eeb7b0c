#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/settings/key_value_store.h"

namespace tarnwick {

/// The settings as one JSON object in a file that people may read and edit.
///
/// Keys and values that the program does not know survive every rewrite. A file that holds no JSON
/// object is moved aside (settings.json.bad, .bad1, ...) and replaced; one that cannot be read, or
/// cannot be moved, is never touched: the values then live in memory until the program ends.
class JsonKeyValueStore final : public KeyValueStore {
 public:
  /// Receives one plain sentence for the user. Called on the main thread, from the constructor or
  /// from a write, once for each kind of trouble until that works again.
  using ProblemHandler = std::function<void(const std::string& sentence)>;

  /// Reads the file at `path`, an absolute path; its folder is created with the first write.
  JsonKeyValueStore(std::string path, ProblemHandler onProblem);
  ~JsonKeyValueStore() override;

  [[nodiscard]] std::optional<std::string> string(const std::string& key) const override;
  /// Only a JSON number without fraction and exponent, within 64 bits, counts as an integer.
  [[nodiscard]] std::optional<std::int64_t> integer(const std::string& key) const override;
  [[nodiscard]] bool boolean(const std::string& key) const override;
  [[nodiscard]] std::optional<std::vector<std::string>> stringList(
      const std::string& key) const override;

  void setString(const std::string& key, const std::string& value) override;
  void setInteger(const std::string& key, std::int64_t value) override;
  void setBoolean(const std::string& key, bool value) override;
  void setStringList(const std::string& key, const std::vector<std::string>& value) override;

 private:
  enum class OnDisk { ours, leftAlone };
  struct Values;

  void load();
  void moveDamagedAside();
  void save();

  std::string path_;
  ProblemHandler onProblem_;
  std::unique_ptr<Values> values_;
  OnDisk onDisk_ = OnDisk::ours;
  bool failureTold_ = false;
};

}  // namespace tarnwick
