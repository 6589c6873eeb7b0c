#include "bench/private_display.h"

#include <csignal>
#include <cstdlib>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarnwick {

PrivateDisplay::PrivateDisplay() {
  int ends[2];
  if (::pipe(ends) != 0) std::abort();
  server_ = ::fork();
  if (server_ == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    ::close(ends[0]);
    const std::string number = std::to_string(ends[1]);
    ::execlp("Xvfb", "Xvfb", "-displayfd", number.c_str(), "-screen", "0", "1280x900x24",
             "-nolisten", "tcp", "-noreset", static_cast<char*>(nullptr));
    ::_exit(127);
  }
  ::close(ends[1]);
  char digit = 0;
  name_.push_back(':');
  while (::read(ends[0], &digit, 1) == 1 && digit != '\n') name_ += digit;
  ::close(ends[0]);
  if (name_.size() == 1) std::abort();
}

PrivateDisplay::~PrivateDisplay() {
  ::kill(server_, SIGTERM);
  ::waitpid(server_, nullptr, 0);
}

}  // namespace tarnwick
