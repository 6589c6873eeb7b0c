#include "app/instance_lock.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <utility>

#include "core/files/read_file.h"

namespace tarnwick {
namespace {

constexpr mode_t forTheUserAlone = 0600;
constexpr int waitingConnections = 128;

/// The same for the same folder in every process and version (FNV-1a).
std::uint64_t fingerprint(const std::string& text) {
  std::uint64_t hash = 14695981039346656037U;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
  return hash;
}

/// The session's folder for sockets when there is one of the user's; else `folder`.
std::string socketFolder(const std::string& folder) {
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  struct stat state = {};
  const bool usable = runtime && *runtime == '/' && ::stat(runtime, &state) == 0 &&
                      S_ISDIR(state.st_mode) && state.st_uid == ::geteuid();
  return usable ? runtime : folder;
}

/// A file that may be locked: for writing, or only for reading on a disk that takes no writing.
FileDescriptor openLockFile(const std::string& path) {
  FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, forTheUserAlone));
  if (!file) file.reset(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  return file;
}

void writeWhole(int file, const std::string& text) {
  // Whoever cannot read the path there looks for the socket at its usual place.
  if (::ftruncate(file, 0) != 0) return;
  [[maybe_unused]] const ssize_t written = ::pwrite(file, text.data(), text.size(), 0);
}

}  // namespace

InstanceLock::InstanceLock(std::string folder)
    : folder_(std::move(folder)),
      // A socket's path must be short, which a folder of the user's need not be.
      usualSocket_(
          fmt::format("{}/tarnwick-{:016x}.sock", socketFolder(folder_), fingerprint(folder_))) {}

InstanceLock::~InstanceLock() {
  unlock();
}

InstanceLock::State InstanceLock::tryLock() {
  const State state = lockFile(folder_ + "/instance.lock");
  return state == State::impossible ? lockFile(usualSocket_ + ".lock") : state;
}

InstanceLock::State InstanceLock::lockFile(const std::string& path) {
  FileDescriptor file = openLockFile(path);
  if (!file) return State::impossible;
  int result = 0;
  do {
    result = ::flock(file.get(), LOCK_EX | LOCK_NB);
  } while (result != 0 && errno == EINTR);
  if (result != 0) return errno == EWOULDBLOCK ? State::heldByOther : State::impossible;
  file_ = std::move(file);
  return State::held;
}

void InstanceLock::unlock() {
  if (!boundSocket_.empty()) ::unlink(std::exchange(boundSocket_, {}).c_str());
  file_.reset();
}

FileDescriptor InstanceLock::listen() {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  if (usualSocket_.size() >= sizeof address.sun_path) return {};
  std::memcpy(address.sun_path, usualSocket_.c_str(), usualSocket_.size());

  FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  ::unlink(usualSocket_.c_str());
  // Nobody can connect before listen(), and then the file is for the user alone.
  if (!socket || ::bind(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
      ::chmod(usualSocket_.c_str(), forTheUserAlone) != 0 ||
      ::listen(socket.get(), waitingConnections) != 0) {
    return {};
  }
  boundSocket_ = usualSocket_;
  if (file_) writeWhole(file_.get(), boundSocket_ + '\n');
  return socket;
}

// A start from another session, or from none, may have another usual place: the file tells.
std::string InstanceLock::socketPath() const {
  constexpr std::size_t longest = 4096;
  const FileContent content = readFile(folder_ + "/instance.lock", longest);
  const std::string path = content.bytes.substr(0, content.bytes.find('\n'));
  return path.starts_with('/') ? path : usualSocket_;
}

}  // namespace tarnwick
