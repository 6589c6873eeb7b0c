#include <algorithm>
#include <array>
#include <cstdint>
#include <fmt/format.h>
#include <string>
#include <vector>

#include "practice/console.h"
#include "practice/refusal.h"
#include "practice/tool.h"

namespace tarnwick::practice {
namespace {

constexpr std::size_t kLayers = 11;
constexpr std::size_t kSharedLayers = 2;   // what every flavor begins with
constexpr std::size_t kParallel = 3;       // downloads at once; the others wait
constexpr double kSecondsPerLayer = 0.62;  // eleven of them make about seven seconds

/// FNV-1a: layers keep their ids from one pull to the next.
std::uint64_t hashOf(std::string_view text, std::uint64_t seed) {
  std::uint64_t value = 14695981039346656037ULL ^ (seed * 0x9E3779B97F4A7C15ULL);
  for (const char c : text) {
    value ^= static_cast<unsigned char>(c);
    value *= 1099511628211ULL;
  }
  return value ^ (value >> 29U);
}

struct Reference {
  std::string repository;  // without the registry's host
  std::string tag;
};

Reference parse(const std::string& text) {
  const std::size_t slash = text.find('/');
  const std::string first = text.substr(0, slash);
  const bool host = slash != std::string::npos && first.find_first_of(".:") != std::string::npos;
  const std::string rest = host ? text.substr(slash + 1) : text;
  const std::size_t colon = rest.rfind(':');
  if (rest.empty() || rest.find(' ') != std::string::npos) {
    throw Refusal(1, "invalid reference format");
  }
  if (colon == std::string::npos) return {rest, "latest"};
  return {rest.substr(0, colon), rest.substr(colon + 1)};
}

std::string registryOf(const std::string& text) {
  return text.substr(0, text.find('/'));
}

class Pull {
 public:
  Pull(const Call& call, const std::string& reference)
      : call_(call), reference_(reference), parsed_(parse(reference)) {
    for (std::size_t i = 0; i < kLayers; ++i) {
      const std::string& origin = i < kSharedLayers ? parsed_.repository : reference;
      layers_.push_back(fmt::format("{:012x}", hashOf(origin, i + 1) & 0xFFFFFFFFFFFFULL));
    }
  }

  void run() {
    say(kLabel);
    refuseEarly();
    pauseFor(0.5);
    say(fmt::format("{}: Pulling from {}", parsed_.tag, parsed_.repository));
    const auto& images = call_.folder.load().images;
    const bool upToDate = images.contains(reference_);
    if (!upToDate) download(images.empty() ? 0 : kSharedLayers);
    pauseFor(0.2);
    std::string digest;
    for (std::uint64_t i = 101; i < 105; ++i)
      digest += fmt::format("{:016x}", hashOf(reference_, i));
    say("Digest: sha256:" + digest);
    say(fmt::format("Status: {} {}",
                    upToDate ? "Image is up to date for" : "Downloaded newer image for",
                    reference_));
    call_.folder.update([this](State& state) { state.images.insert(reference_); });
    say(reference_);
  }

 private:
  void refuseEarly() const {
    if (call_.faults.has(Fault::PullNoNetwork)) {
      const std::string host = registryOf(reference_);
      throw Refusal(1, fmt::format("Error response from daemon: Get \"https://{0}/v2/\": dial tcp: "
                                   "lookup {0}: no such host",
                                   host));
    }
    if (call_.faults.has(Fault::PullManifestUnknown)) {
      throw Refusal(1,
                    fmt::format("Error response from daemon: manifest for {} not found: manifest "
                                "unknown: manifest unknown",
                                reference_));
    }
  }

  void step(std::size_t layer, std::string_view status, double seconds = 0.0) const {
    say(fmt::format("{}: {}", layers_[layer], status));
    pauseFor(seconds);
  }

  void download(std::size_t present) const {
    for (std::size_t i = 0; i < kLayers; ++i) {
      step(i, i < present ? "Already exists" : "Pulling fs layer", 0.02);
    }
    for (std::size_t i = present + kParallel; i < kLayers; ++i) step(i, "Waiting");
    noise();
    std::size_t unpacked = present;
    for (std::size_t i = present; i < kLayers; ++i) {
      // Two thirds of the way the layers come out of order, as they do over a network.
      const std::size_t layer = swapped(i);
      pauseFor(kSecondsPerLayer * 0.55);
      step(layer, "Verifying Checksum", kSecondsPerLayer * 0.1);
      step(layer, "Download complete", kSecondsPerLayer * 0.05);
      if (i == present + 4) strikeMidway();
      if (i >= present + 2) step(unpacked++, "Pull complete", kSecondsPerLayer * 0.3);
    }
    while (unpacked < kLayers) step(unpacked++, "Pull complete", kSecondsPerLayer * 0.3);
  }

  static std::size_t swapped(std::size_t i) {
    if (i == 6) return 7;
    if (i == 7) return 6;
    return i;
  }

  void strikeMidway() const {
    if (call_.faults.has(Fault::PullHangs)) {
      hang(call_.folder.path());
      throw Refusal(1, "context deadline exceeded");
    }
    if (call_.faults.has(Fault::PullDiskFull)) {
      throw Refusal(1,
                    "failed to register layer: write /usr/lib/x86_64-linux-gnu/libLLVM.so: "
                    "no space left on device");
    }
  }

  void noise() const {
    if (call_.faults.has(Fault::PullFloods)) {
      std::string block;
      for (std::size_t i = 0; block.size() < 1'000'000; ++i) {
        block += fmt::format("{}: Downloading  {:>7}kB/1.5GB\n", layers_[i % kLayers], i);
      }
      flood(block);
    }
    if (call_.faults.has(Fault::PullInvalidUtf8)) {
      say("\xff\xfe\xc3\x28 not UTF-8: \xed\xa0\x80 \xf5\x80\x80\x80");
      say(layers_[0] + ": Downloading \xe2\x96");
    }
    if (call_.faults.has(Fault::PullLongLine)) {
      const std::string block(1'000'000, '=');
      for (int i = 0; i < 50; ++i) write(block);
      say("");
    }
  }

  const Call& call_;
  std::string reference_;
  Reference parsed_;
  std::vector<std::string> layers_;
};

}  // namespace

void pullImage(const Call& call, const std::string& reference) {
  Pull(call, reference).run();
}

}  // namespace tarnwick::practice
