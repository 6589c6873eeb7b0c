// Stands for docker and colima that answer at once: the desktop's container runs, everything works.

#include <cstring>
#include <unistd.h>

int main(int argc, char** argv) {
  if (argc > 1 && std::strcmp(argv[1], "inspect") == 0) {
    constexpr char answer[] = "true|registry.test/linuxserver/webtop:latest\n";
    return ::write(STDOUT_FILENO, answer, sizeof answer - 1) == sizeof answer - 1 ? 0 : 1;
  }
  return 0;
}
