// The log of a run, against one that keeps everything and cuts by looking at all of it. Each line
// of the input is a line of the log; its first byte says how long it is made by repeating it.
#include "core/controller/log_text.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utf8proc.h>
#include <vector>

#include "core/text/utf8.h"
#include "support/input.h"
#include "support/require.h"

using namespace tarnwick;
using fuzz::require;

namespace {

/// Where each user-perceived character of `text` begins.
std::vector<std::size_t> characters(std::string_view text) {
  std::vector<std::size_t> begins;
  utf8proc_int32_t previous = 0;
  utf8proc_int32_t state = 0;
  for (std::size_t at = 0; at < text.size();) {
    utf8proc_int32_t codePoint = 0;
    const auto length =
        utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data() + at),
                         static_cast<utf8proc_ssize_t>(text.size() - at), &codePoint);
    require(length > 0, "the log is UTF-8");
    if (at == 0 || utf8proc_grapheme_break_stateful(previous, codePoint, &state)) {
      begins.push_back(at);
    }
    previous = codePoint;
    at += static_cast<std::size_t>(length);
  }
  return begins;
}

class SlowLog {
 public:
  void appendLine(std::string_view line) {
    text_.append(line).push_back('\n');
    appended_ += line.size() + 1;
    if (text_.size() <= LogText::maxBytes) return;
    const std::vector<std::size_t> begins = characters(text_);
    if (begins.size() <= LogText::keptCharacters) return;
    text_.erase(0, begins[begins.size() - LogText::keptCharacters]);
  }

  [[nodiscard]] std::vector<std::string_view> tail(std::size_t count) const {
    std::vector<std::string_view> lines;
    std::string_view rest = text_;
    while (!rest.empty()) {
      const std::string_view line = rest.substr(0, rest.find('\n'));
      if (!line.empty()) lines.push_back(line);
      rest.remove_prefix(std::min(rest.size(), line.size() + 1));
    }
    lines.erase(lines.begin(),
                lines.end() - static_cast<std::ptrdiff_t>(std::min(count, lines.size())));
    return lines;
  }

  [[nodiscard]] std::string_view text() const { return text_; }
  [[nodiscard]] std::uint64_t appended() const { return appended_; }

 private:
  std::string text_;
  std::uint64_t appended_ = 0;
};

/// The first byte is the number of doublings, so that a short input can fill the log.
std::string stretched(std::string_view line) {
  if (line.empty()) return {};
  constexpr std::size_t longest = 30'000;
  const unsigned doublings = static_cast<unsigned char>(line.front()) % 16U;
  std::string text = decodeUtf8(std::string(line.substr(1)));
  for (unsigned i = 0; i < doublings && text.size() < longest; ++i) text += std::string(text);
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  LogText log;
  SlowLog expected;
  // Looking at a whole log is slow: a few lines that are cut off are enough.
  for (int i = 0; i < 24 && !input.empty(); ++i) {
    const std::string line = stretched(input.line());
    log.appendLine(line);
    expected.appendLine(line);
    require(log.text() == expected.text(), "the log is cut to its last characters");
    require(log.appendedBytes() == expected.appended(), "what was appended is counted");
    require(log.empty() == expected.text().empty(), "an empty log says so");
  }
  for (const std::size_t count : {0U, 1U, 3U, 100U}) {
    require(log.tail(count) == expected.tail(count), "the tail is the last lines with text");
  }
  return 0;
}
