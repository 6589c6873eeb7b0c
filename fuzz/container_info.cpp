// What docker printed about the container.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/engine/docker.h"
#include "support/input.h"
#include "support/require.h"

using namespace tarnwick;
using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::string output(input.rest());
  const auto info = parseContainerInfo(output);

  const auto bars = std::ranges::count(output, '|');
  require(info.has_value() == (bars == 1), "exactly one bar makes an answer");
  if (!info) return 0;

  const std::size_t bar = output.find('|');
  require(output.find(info->image, bar) != std::string::npos, "the image stands behind the bar");
  require(!info->running || output.find("true") < bar, "what runs is called true");

  constexpr std::string_view space = " \t\r\n\v\f";
  const bool hasBlanks =
      !info->image.empty() && space.find(info->image.back()) != std::string_view::npos;
  require(!hasBlanks, "no white space is taken along at the end");
  const std::string again = (info->running ? "true|" : "false|") + info->image;
  const auto second = parseContainerInfo(again + "\n");
  require(second && second->running == info->running && second->image == info->image,
          "an answer that is printed again is read the same");
  return 0;
}
