// Writes so many bytes of output in lines of 53 bytes, as fast as it can. With "mixed" as the
// second argument each tenth line has characters that are not ASCII.

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <unistd.h>

int main(int argc, char** argv) {
  if (argc < 2) return 1;
  std::size_t left = std::stoul(argv[1]);
  const bool mixed = argc > 2 && std::string_view(argv[2]) == "mixed";
  const std::string plain = "0123456789abc: Extracting [=====>        ]  50%      \n";
  const std::string other = "0123456789abc: Größe geprüft … ✓ 日本語    50% \n";
  std::string block;
  for (int i = 0; block.size() < 60'000; ++i) block += mixed && i % 10 == 9 ? other : plain;
  while (left > 0) {
    const ssize_t count = ::write(STDOUT_FILENO, block.data(), std::min(left, block.size()));
    if (count <= 0) return 1;
    left -= static_cast<std::size_t>(count);
  }
  return 0;
}
