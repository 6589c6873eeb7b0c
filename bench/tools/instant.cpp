// Stands for docker and colima that answer at once: the desktop's container runs, everything works.
// A pull prints 1 GB of lines as fast as it can.

#include <cstring>
#include <string>
#include <unistd.h>

namespace {

bool writeAll(const char* bytes, std::size_t size) {
  while (size > 0) {
    const ssize_t written = ::write(STDOUT_FILENO, bytes, size);
    if (written <= 0) return false;
    bytes += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

int flood() {
  std::string block;
  while (block.size() < 1'000'000) block += "a1b2c3d4e5f6: Downloading  123456kB/1.5GB\n";
  for (std::size_t sent = 0; sent < 1'000'000'000; sent += block.size()) {
    if (!writeAll(block.data(), block.size())) return 1;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1 && std::strcmp(argv[1], "pull") == 0) return flood();
  if (argc > 1 && std::strcmp(argv[1], "inspect") == 0) {
    constexpr char answer[] = "true|registry.test/linuxserver/webtop:latest\n";
    return writeAll(answer, sizeof answer - 1) ? 0 : 1;
  }
  return 0;
}
