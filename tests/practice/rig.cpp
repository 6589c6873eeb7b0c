#include "rig.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <fstream>
#include <iterator>
#include <netinet/in.h>
#include <signal.h>
#include <spawn.h>
#include <sstream>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "practice/state.h"

namespace tarnwick::practice::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// Two ports that the kernel gave out a moment ago and that nobody listens on.
std::pair<int, int> freePorts() {
  int sockets[2] = {};
  int ports[2] = {};
  for (int i = 0; i < 2; ++i) {
    sockets[i] = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(::bind(sockets[i], generic, size), 0);
    EXPECT_EQ(::getsockname(sockets[i], generic, &size), 0);
    ports[i] = ntohs(address.sin_port);
  }
  ::close(sockets[0]);
  ::close(sockets[1]);
  return {ports[0], ports[1]};
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

}  // namespace

Rig::Rig() {
  std::string name = (fs::temp_directory_path() / "tarnwick-practice-XXXXXX").string();
  folder_ = ::mkdtemp(name.data());
  tools_ = folder_ / "bin";
  state_ = folder_ / "state";
  fs::create_directory(tools_);
  for (const char* tool : {"docker", "colima", "brew"}) {
    fs::create_symlink(PRACTICE_PROGRAM, tools_ / tool);
  }
  std::tie(httpPort_, httpsPort_) = freePorts();
}

Rig::~Rig() {
  docker({"practice", "reset"});
  fs::remove_all(folder_);
}

pid_t Rig::start(const std::string& tool, const Words& arguments, const Environment& extra,
                 Outputs outputs) const {
  Environment variables = {{"PATH", "/usr/bin:/bin"},
                           {"HOME", folder_.string()},
                           {"TARNWICK_PRACTICE_STATE", state_.string()},
                           {"TARNWICK_PRACTICE_PACE", "0"}};
  for (const auto& [name, value] : extra) variables[name] = value;
  std::vector<std::string> entries;
  for (const auto& [name, value] : variables) entries.push_back(name + "=" + value);
  std::vector<std::string> words = {(tools_ / tool).string()};
  words.insert(words.end(), arguments.begin(), arguments.end());

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  if (outputs.out >= 0) posix_spawn_file_actions_adddup2(&actions, outputs.out, STDOUT_FILENO);
  if (outputs.err >= 0) posix_spawn_file_actions_adddup2(&actions, outputs.err, STDERR_FILENO);
  posix_spawn_file_actions_addclosefrom_np(&actions, 3);
  pid_t pid = -1;
  EXPECT_EQ(::posix_spawn(&pid, words[0].c_str(), &actions, nullptr, pointers(words).data(),
                          pointers(entries).data()),
            0);
  posix_spawn_file_actions_destroy(&actions);
  return pid;
}

std::optional<int> Rig::ended(pid_t pid, std::chrono::milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (true) {
    int status = 0;
    if (::waitpid(pid, &status, WNOHANG) == pid) {
      return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
    }
    if (std::chrono::steady_clock::now() > end) return std::nullopt;
    std::this_thread::sleep_for(1ms);
  }
}

Outcome Rig::run(const std::string& tool, const Words& arguments, const Environment& extra) const {
  // Two pipes, read to their ends by two threads: whoever kept one of them would be noticed here.
  int out[2] = {};
  int err[2] = {};
  EXPECT_EQ(::pipe2(out, O_CLOEXEC), 0);
  EXPECT_EQ(::pipe2(err, O_CLOEXEC), 0);
  Outcome outcome;
  const auto collect = [](int descriptor, std::string& text) {
    char buffer[65536];
    for (ssize_t count = 0; (count = ::read(descriptor, buffer, sizeof buffer)) > 0;) {
      text.append(buffer, static_cast<std::size_t>(count));
    }
  };
  const pid_t pid = start(tool, arguments, extra, {out[1], err[1]});
  ::close(out[1]);
  ::close(err[1]);
  std::thread first(collect, out[0], std::ref(outcome.out));
  std::thread second(collect, err[0], std::ref(outcome.err));
  std::optional<int> status = ended(pid, 20s);
  if (!status) {
    ::kill(pid, SIGKILL);
    status = ended(pid, 5s);
  }
  first.join();
  second.join();
  ::close(out[0]);
  ::close(err[0]);
  outcome.status = status.value_or(-SIGKILL);
  return outcome;
}

void Rig::startEngine() const {
  EXPECT_EQ(run("colima", {"start", "--cpu", "2", "--memory", "4", "--disk", "20"}).status, 0);
  EXPECT_EQ(docker({"pull", kImage}).status, 0);
}

std::filesystem::path Rig::composeFile(bool passwordProtected) const {
  const fs::path path = folder_ / "compose.yml";
  std::ofstream(path) << fmt::format(
      "# Written by Tarnwick. Image tag: latest (a flavor tag, not pinned to a build).\n"
      "name: tarnwick\n"
      "services:\n"
      "  tarnwick:\n"
      "    image: \"{}\"\n"
      "    container_name: tarnwick\n"
      "    restart: unless-stopped\n"
      "    shm_size: \"1gb\"\n"
      "    ports:\n"
      "      - \"127.0.0.1:{}:3000\"\n"
      "      - \"127.0.0.1:{}:3001\"\n"
      "    environment:\n"
      "      - PUID=1000\n"
      "      - PGID=1000\n"
      "      - \"TZ=Europe/Berlin\"\n"
      "      - \"TITLE=Tarnwick\"\n"
      "{}"
      "    volumes:\n"
      "      - config:/config\n"
      "volumes:\n"
      "  config:\n"
      "    name: {}\n",
      kImage, httpPort_, httpsPort_,
      passwordProtected ? "      - CUSTOM_USER\n      - PASSWORD\n" : "", kVolume);
  return path;
}

Outcome Rig::up(const Environment& extra, const Words& more) const {
  const bool protect = extra.contains("PASSWORD");
  Words words = {"compose", "-p", "tarnwick", "-f", composeFile(protect).string(), "up", "-d"};
  words.insert(words.end(), more.begin(), more.end());
  return docker(words, extra);
}

Words Rig::runArguments(const std::string& image) const {
  return {"run",        "-d",
          "--name",     "tarnwick",
          "--restart",  "unless-stopped",
          "--shm-size", "1gb",
          "-p",         fmt::format("127.0.0.1:{}:3000", httpPort_),
          "-p",         fmt::format("127.0.0.1:{}:3001", httpsPort_),
          "-e",         "PUID=1000",
          "-e",         "TZ=Europe/Berlin",
          "-v",         std::string(kVolume) + ":/config",
          image};
}

bool Rig::running() const {
  return docker({"inspect", "-f", kInspectFormat, "tarnwick"}).out ==
         fmt::format("true|{}\n", kImage);
}

httplib::Client Rig::client() const {
  httplib::Client client("127.0.0.1", httpPort_);
  client.set_connection_timeout(2s);
  client.set_read_timeout(2s);
  return client;
}

int Rig::statusOfPage(const std::string& user, const std::string& password) const {
  httplib::Client page = client();
  if (!user.empty()) page.set_basic_auth(user, password);
  const auto end = std::chrono::steady_clock::now() + 5s;
  while (std::chrono::steady_clock::now() < end) {
    if (const auto answer = page.Get("/")) return answer->status;
    std::this_thread::sleep_for(5ms);
  }
  return 0;
}

pid_t Rig::serverPid() const {
  ::setenv("TARNWICK_PRACTICE_STATE", state_.c_str(), 1);
  const State state = StateFolder::open().load();
  return state.container ? state.container->serverPid : 0;
}

std::string readFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> linesOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace tarnwick::practice::test
