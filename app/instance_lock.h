#pragma once

#include <string>

#include "core/process/file_descriptor.h"

namespace tarnwick {

/// The mark of the one process that works with a folder of user data, and the socket by which the
/// others reach it. The system takes the mark back when its process ends, however that happens, so
/// that nothing stale is ever in the way. The socket's file is for the user alone. Any one thread.
class InstanceLock {
 public:
  explicit InstanceLock(std::string folder);
  InstanceLock(const InstanceLock&) = delete;
  InstanceLock& operator=(const InstanceLock&) = delete;
  /// Gives the mark back and removes the socket, as far as they are held.
  ~InstanceLock();

  enum class State {
    held,         ///< by this object
    heldByOther,  ///< by another process or object
    impossible    ///< neither the folder nor the session's one takes a file
  };
  State tryLock();
  void unlock();

  /// Opens the socket in place of one that an ended process left behind. Only while no other
  /// process holds the mark. The descriptor goes to the caller, who accepts connections from it;
  /// none when no socket can be made.
  FileDescriptor listen();
  /// Where the process that holds the mark listens.
  [[nodiscard]] std::string socketPath() const;

 private:
  State lockFile(const std::string& path);

  std::string folder_;
  std::string usualSocket_;
  FileDescriptor file_;
  std::string boundSocket_;  ///< the socket's path while it is ours
};

}  // namespace tarnwick
