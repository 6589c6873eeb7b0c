#pragma once

#include "core/controller/http_probe.h"

namespace tarnwick {

/// Of an endless answer the first megabyte is read; its status counts all the same.
class CurlHttpProbe final : public HttpProbe {
 public:
  /// The first one is made before other threads use the library.
  CurlHttpProbe();
  std::optional<int> status(const std::string& url, std::chrono::milliseconds limit) override;
};

}  // namespace tarnwick
