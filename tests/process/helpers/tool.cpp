// The tool that the tests of the runners start. Its first argument says how it behaves.

#include <algorithm>
#include <cctype>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <dirent.h>
#include <map>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Arguments = std::vector<std::string>;

extern "C" char** environ;

void put(int file, const std::string& text) {
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t count = ::write(file, text.data() + done, text.size() - done);
    if (count < 0) std::_Exit(99);
    done += static_cast<std::size_t>(count);
  }
}

void sleepMilliseconds(int count) {
  std::this_thread::sleep_for(std::chrono::milliseconds(count));
}

int exitWith(const Arguments& args) {
  return std::stoi(args.at(0));
}

/// Writes its first argument to standard output, its second to standard error.
int say(const Arguments& args) {
  put(STDOUT_FILENO, args.at(0));
  if (args.size() > 1) put(STDERR_FILENO, args[1]);
  return 0;
}

/// Writes its arguments in turn to standard output and standard error, with a pause after each.
int alternate(const Arguments& args) {
  int file = STDOUT_FILENO;
  for (const std::string& text : args) {
    put(file, text);
    file = file == STDOUT_FILENO ? STDERR_FILENO : STDOUT_FILENO;
    sleepMilliseconds(100);
  }
  return 0;
}

/// Writes its arguments to standard output, with a pause after each.
int pieces(const Arguments& args) {
  for (const std::string& text : args) {
    put(STDOUT_FILENO, text);
    sleepMilliseconds(100);
  }
  return 0;
}

int hang(const Arguments&) {
  put(STDOUT_FILENO, "begun\n");
  sleepMilliseconds(20'000);
  return 0;
}

/// Does not end when asked; ends when its output has nowhere to go, or after so many milliseconds.
int stubborn(const Arguments& args) {
  ::signal(SIGTERM, SIG_IGN);
  put(STDOUT_FILENO, "begun\n");
  for (int left = std::stoi(args.at(0)); left > 0; left -= 50) {
    sleepMilliseconds(50);
    put(STDOUT_FILENO, ".");
  }
  return 4;
}

/// Writes so many bytes, in lines of so many characters (0: no line end at all).
int flood(const Arguments& args) {
  const std::size_t total = std::stoul(args.at(0));
  const std::size_t lineLength = std::stoul(args.at(1));
  std::string block(64 * 1024, 'x');
  for (std::size_t i = lineLength; lineLength > 0 && i < block.size(); i += lineLength + 1) {
    block[i] = '\n';
  }
  if (lineLength > 0) block.back() = '\n';
  for (std::size_t left = total; left > 0;) {
    const std::size_t count = std::min(left, block.size());
    put(STDOUT_FILENO, block.substr(0, count));
    left -= count;
  }
  return 0;
}

/// Ends at once and leaves a process behind that holds the pipes, and fills them when told "busy".
int leaveBehind(const Arguments& args) {
  if (::fork() == 0) {
    const bool busy = args.at(0) == "busy";
    for (int i = 0; i < 5'000'000; ++i) {
      if (busy) put(STDOUT_FILENO, std::string(4096, 'g'));
      if (!busy) sleepMilliseconds(50);
      if (!busy && i == 100) break;
    }
    std::_Exit(0);
  }
  if (args.at(0) == "busy") sleepMilliseconds(100);
  put(STDOUT_FILENO, "parent done");
  return 0;
}

int dieOf(const Arguments& args) {
  put(STDOUT_FILENO, "last words");
  ::signal(std::stoi(args.at(0)), SIG_DFL);
  ::raise(std::stoi(args.at(0)));
  return 0;
}

/// Closes its output, and ends with status 7 a little later.
int closeOutput(const Arguments&) {
  ::close(STDOUT_FILENO);
  ::close(STDERR_FILENO);
  sleepMilliseconds(200);
  return 7;
}

int showArguments(const Arguments& args) {
  for (const std::string& text : args) put(STDOUT_FILENO, "[" + text + "]");
  return 0;
}

int showEnvironment(const Arguments&) {
  for (char** entry = environ; *entry != nullptr; ++entry) {
    put(STDOUT_FILENO, std::string(*entry) + '\n');
  }
  return 0;
}

/// What it inherited: open descriptors, what standard input gives, the signals' state.
int showInheritance(const Arguments&) {
  std::string files;
  DIR* folder = ::opendir("/proc/self/fd");
  while (const dirent* entry = ::readdir(folder)) {
    if (std::isdigit(static_cast<unsigned char>(entry->d_name[0])) == 0) continue;
    if (std::stoi(entry->d_name) != ::dirfd(folder)) files += std::string(" ") + entry->d_name;
  }
  ::closedir(folder);
  char byte = 0;
  const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
  put(STDOUT_FILENO, "files" + files + "\ninput " + std::to_string(count) + '\n');
  sigset_t blocked;
  ::sigprocmask(SIG_SETMASK, nullptr, &blocked);
  for (int signal = 1; signal <= SIGRTMAX; ++signal) {
    struct sigaction action {};
    // The C library keeps a few numbers to itself and answers neither question for them.
    if (::sigaction(signal, nullptr, &action) != 0) continue;
    if (action.sa_handler == SIG_IGN) put(STDOUT_FILENO, "ignored " + std::to_string(signal));
    if (::sigismember(&blocked, signal) == 1) {
      put(STDOUT_FILENO, "blocked " + std::to_string(signal));
    }
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::map<std::string, int (*)(const Arguments&)> modes{
      {"exit", exitWith},
      {"say", say},
      {"alternate", alternate},
      {"pieces", pieces},
      {"hang", hang},
      {"stubborn", stubborn},
      {"flood", flood},
      {"leave-behind", leaveBehind},
      {"die-of", dieOf},
      {"close-output", closeOutput},
      {"arguments", showArguments},
      {"environment", showEnvironment},
      {"inheritance", showInheritance},
  };
  const auto mode = modes.find(argc > 1 ? argv[1] : "");
  if (mode == modes.end()) return 98;
  return mode->second(Arguments(argv + 2, argv + argc));
}
