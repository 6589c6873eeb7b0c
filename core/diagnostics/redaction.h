#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// Takes what is nobody's business out of a text that the user is going to show to others. Any
/// thread.
class Redaction {
 public:
  /// `homeFolder` is shown as "~", and its last name, which mostly is the user's, as "(user)"
  /// wherever it stands as a word. `secrets` are taken out wherever they stand; empty ones are
  /// passed over.
  Redaction(std::string homeFolder, const std::vector<std::string>& secrets);

  /// Also hides the values of variables and options whose names speak of passwords, tokens, keys or
  /// secrets, and the user part of addresses.
  [[nodiscard]] std::string apply(std::string text) const;

 private:
  std::string homeFolder_;
  std::string userName_;
  std::vector<std::string> secrets_;
};

}  // namespace tarnwick
