#pragma once

#include <string>
#include <utility>

#include "app/instance_lock.h"
#include "app/wish.h"
#include "app/wish_client.h"

namespace tarnwick {

/// Sees to it that one process at a time works with the user's data: two would fight over the
/// container and over the web view's storage. Needs neither an event loop nor a display.
class SingleInstance {
 public:
  /// `folder` holds the data that one process is to have for itself, and exists.
  explicit SingleInstance(std::string folder, AnswerLimits limits = {});

  enum class Role {
    first,         ///< this process is the one, or may go on alone
    passedOn,      ///< another one is, and has answered
    otherIsSilent  ///< another one is, and does not answer
  };
  struct Entry {
    Role role = Role::first;
    Answer answer;  ///< the other's, when the request was passed on
  };

  /// Becomes the one process until this object goes, or passes the request on to the one there is.
  /// Waits for the end of one that is quitting. Blocks at most for the limits.
  Entry enter(const Request& request);
  /// Passes the request on when there is a process to take it, and never becomes it.
  Entry passOn(const Request& request);

  /// The socket where later processes' requests arrive, once `enter` has made this process the one;
  /// none when there is none. They wait there from the beginning.
  FileDescriptor takeSocket() { return std::move(socket_); }

 private:
  Reached askHolder(const Request& request, InstanceLock::State& state);

  InstanceLock lock_;
  AnswerLimits limits_;
  FileDescriptor socket_;
};

}  // namespace tarnwick
