#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/controller/http_probe.h"

namespace tarnwick {

/// Answers as `answer` says and remembers what it was asked. For work on virtual time.
class ScriptedHttpProbe final : public HttpProbe {
 public:
  std::function<std::optional<int>()> answer = [] { return std::optional<int>(200); };
  std::vector<std::string> asked;

  std::optional<int> status(const std::string& url, std::chrono::milliseconds) override {
    asked.push_back(url);
    return answer();
  }
};

}  // namespace tarnwick
