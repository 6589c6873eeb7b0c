// Lines that arrive in chunks. The first line of the input gives the chunks' lengths, over and
// over; the rest is the tool's output.
#include "core/process/line_splitter.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/text/utf8.h"
#include "support/input.h"
#include "support/require.h"

using namespace tarnwick;
using fuzz::require;

namespace {

using Lines = std::vector<std::string>;

/// Where each chunk of `text` ends.
std::vector<std::size_t> cuts(std::string_view text, std::string_view lengths) {
  std::vector<std::size_t> ends;
  std::size_t end = 0;
  for (std::size_t i = 0; end < text.size(); ++i) {
    // Letters stand for 1 to 26, and an empty chunk is a chunk.
    const std::size_t length =
        lengths.empty() ? text.size()
                        : static_cast<std::size_t>(
                              static_cast<unsigned char>(lengths[i % lengths.size()]) & 0x1FU);
    // Only empty chunks would never end.
    end = std::min(text.size(), end + (i > 4 * text.size() ? text.size() : length));
    ends.push_back(end);
  }
  return ends;
}

Lines splitAtOnce(std::string_view text) {
  Lines lines;
  LineSplitter splitter;
  const auto keep = [&lines](std::string_view line) { lines.emplace_back(line); };
  splitter.feed(text, keep);
  splitter.flush(keep);
  return lines;
}

Lines splitInChunks(std::string_view text, const std::vector<std::size_t>& ends) {
  Lines lines;
  LineSplitter splitter;
  const auto keep = [&lines](std::string_view line) { lines.emplace_back(line); };
  std::size_t begin = 0;
  for (const std::size_t end : ends) {
    // A buffer of the chunk's own size: reading past its end is noticed.
    const std::vector<char> chunk(text.begin() + static_cast<std::ptrdiff_t>(begin),
                                  text.begin() + static_cast<std::ptrdiff_t>(end));
    splitter.feed({chunk.data(), chunk.size()}, keep);
    begin = end;
  }
  splitter.flush(keep);
  const std::size_t count = lines.size();
  splitter.flush(keep);
  require(lines.size() == count, "a second flush has nothing to pass on");
  return lines;
}

/// The lines of well-formed text, found by looking at every place.
Lines splitSlowly(std::string_view text) {
  constexpr std::string_view lineEnds[] = {"\n",       "\v",           "\f",          "\r",
                                           "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"};
  Lines lines;
  std::string line;
  const auto end = [&] {
    if (!line.empty()) lines.push_back(line);
    line.clear();
  };
  while (!text.empty()) {
    const auto* found = std::ranges::find_if(
        lineEnds, [text](std::string_view candidate) { return text.starts_with(candidate); });
    if (found != std::end(lineEnds)) {
      end();
      text.remove_prefix(found->size());
    } else {
      line += text.front();
      text.remove_prefix(1);
    }
  }
  end();
  return lines;
}

bool isInsideCharacter(std::string_view text, std::size_t at) {
  return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::string_view lengths = input.line();
  const std::string_view output = input.rest();

  std::vector<std::size_t> ends = cuts(output, lengths);
  std::string decoded;
  std::size_t begin = 0;
  for (const std::size_t end : ends) {
    decoded += decodeUtf8(std::string(output.substr(begin, end - begin)));
    begin = end;
  }
  require(splitInChunks(output, ends) == splitSlowly(decoded),
          "chunks, each decoded by itself, give the lines of all the text");

  const std::string text = decodeUtf8(std::string(output));
  ends = cuts(text, lengths);
  for (std::size_t& end : ends) {
    while (isInsideCharacter(text, end)) ++end;
  }
  require(splitInChunks(text, ends) == splitAtOnce(text), "cuts between characters change no line");
  return 0;
}
