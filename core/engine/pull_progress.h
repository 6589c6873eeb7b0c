#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

/// Turns the output of `docker pull` into a fraction and a summary by counting layers and the stage
/// that each has reached.
class PullProgress {
 public:
  /// Takes one output line; ignores what it does not recognise.
  void ingest(std::string_view line);

  /// 0.0 to 1.0; none before the first layer. Falls back a little when layers are announced late.
  [[nodiscard]] std::optional<double> fraction() const;

  /// "3 of 7 layers downloaded, 1 unpacked".
  [[nodiscard]] std::string summary() const;

  [[nodiscard]] const std::map<std::string, int, std::less<>>& layers() const { return layers_; }

 private:
  std::map<std::string, int, std::less<>> layers_;
};

}  // namespace tarnwick
