#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace tarnwick {

/// Asks a web server whether it answers.
class HttpProbe {
 public:
  HttpProbe() = default;
  HttpProbe(const HttpProbe&) = delete;
  HttpProbe& operator=(const HttpProbe&) = delete;
  virtual ~HttpProbe() = default;

  /// Sends one GET and gives the status code, or none when no complete answer came within `limit`.
  /// Follows no redirect, uses no proxy, keeps nothing. Blocks; any thread but the main one.
  virtual std::optional<int> status(const std::string& url, std::chrono::milliseconds limit) = 0;
};

}  // namespace tarnwick
