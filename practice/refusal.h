#pragma once

#include <stdexcept>
#include <string>

namespace tarnwick::practice {

/// How a stand-in gives up: the text for standard error (without a final line feed, may be empty)
/// and the exit status. Thrown by any command, caught once, in main().
class Refusal : public std::runtime_error {
 public:
  Refusal(int status, const std::string& message) : std::runtime_error(message), status_(status) {}
  int status() const { return status_; }

 private:
  int status_;
};

}  // namespace tarnwick::practice
