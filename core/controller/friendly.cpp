#include "core/controller/friendly.h"

#include <algorithm>
#include <array>
#include <vector>

namespace tarnwick {
namespace {

struct Rule {
  std::vector<std::string_view> patterns;
  std::string_view sentence;
};

// The order decides: a "dial tcp … address already in use" is about the port, not the network.
const std::array<Rule, 5>& rules() {
  static const std::array<Rule, 5> table{{
      {{"no space left", "disk quota"},
       "The disk is full. Free some space, or give Colima a bigger disk, and try again."},
      {{"port is already allocated", "address already in use"},
       "A network port is already in use by another program. Choose other ports in Settings."},
      {{"cannot connect to the docker daemon", "is the docker daemon running"},
       "Docker can't reach Colima. Colima may not be running yet."},
      {{"no such host", "i/o timeout", "tls handshake timeout", "network is unreachable",
        "temporary failure in name resolution", "could not resolve", "dial tcp"},
       "No internet connection to download from. Check your network and try again."},
      {{"manifest unknown", "not found: manifest"},
       "The image or tag was not found. It may have been renamed. Try another flavor."},
  }};
  return table;
}

}  // namespace

std::string lowerCased(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return lower;
}

std::string friendly(std::string_view output, std::string_view fallback) {
  const std::string lower = lowerCased(output);
  for (const Rule& rule : rules()) {
    const auto found = [&lower](std::string_view pattern) {
      return lower.find(pattern) != std::string::npos;
    };
    if (std::any_of(rule.patterns.begin(), rule.patterns.end(), found)) {
      return std::string(rule.sentence);
    }
  }
  return std::string(fallback) + " Open Show details for the full output.";
}

}  // namespace tarnwick
