#include "core/engine/pull_progress.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarnwick {

namespace {

constexpr std::size_t shortestId = 12;

bool between(char c, unsigned first, unsigned last) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= first && byte <= last;
}

/// Bytes of the hexadecimal digit that `text` begins with; 0 when it begins with something else.
/// The fullwidth forms are U+FF10 to 19, U+FF21 to 26 and U+FF41 to 46.
std::size_t hexDigitLength(std::string_view text) {
  const char first = text.front();
  if (between(first, '0', '9') || between(first, 'a', 'f') || between(first, 'A', 'F')) return 1;
  if (text.size() < 3 || first != '\xEF') return 0;
  const char last = text[2];
  const bool fullwidth =
      (text[1] == '\xBC' && (between(last, 0x90, 0x99) || between(last, 0xA1, 0xA6))) ||
      (text[1] == '\xBD' && between(last, 0x81, 0x86));
  return fullwidth ? 3 : 0;
}

bool isLayerId(std::string_view text) {
  std::size_t digits = 0;
  while (!text.empty()) {
    const std::size_t length = hexDigitLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
    ++digits;
  }
  return digits >= shortestId;
}

std::optional<int> stageOf(std::string_view status) {
  static constexpr std::array<std::pair<std::string_view, int>, 8> stages = {{
      {"Pull complete", 2},
      {"Already exists", 2},
      {"Download complete", 1},
      {"Verifying Checksum", 1},
      {"Extracting", 1},
      {"Pulling fs layer", 0},
      {"Waiting", 0},
      {"Downloading", 0},
  }};
  for (const auto& [beginning, stage] : stages) {
    if (status.starts_with(beginning)) return stage;
  }
  return std::nullopt;
}

}  // namespace

void PullProgress::ingest(std::string_view line) {
  const std::size_t colon = line.find(": ");
  if (colon == std::string_view::npos) return;
  const std::string_view id = line.substr(0, colon);
  const std::optional<int> stage = stageOf(line.substr(colon + 2));
  if (!stage || !isLayerId(id)) return;
  const auto [layer, isNew] = layers_.try_emplace(std::string(id), *stage);
  layer->second = std::max(layer->second, *stage);
}

std::optional<double> PullProgress::fraction() const {
  if (layers_.empty()) return std::nullopt;
  int done = 0;
  for (const auto& [id, stage] : layers_) done += stage;
  return done / (2.0 * static_cast<double>(layers_.size()));
}

std::string PullProgress::summary() const {
  if (layers_.empty()) return "Downloading the image…";
  const auto atLeast = [this](int wanted) {
    return std::to_string(std::ranges::count_if(
        layers_, [wanted](const auto& layer) { return layer.second >= wanted; }));
  };
  return atLeast(1) + " of " + std::to_string(layers_.size()) + " layers downloaded, " +
         atLeast(2) + " unpacked";
}

}  // namespace tarnwick
