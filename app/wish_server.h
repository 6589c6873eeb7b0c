#pragma once

#include <QLocalServer>
#include <chrono>
#include <functional>

#include "app/wish.h"
#include "core/process/file_descriptor.h"

class QLocalSocket;

namespace tarnwick {

/// Gives the answer to a request, once, at once or later. Whoever asked may be gone by then.
using Reply = std::function<void(const Answer&)>;

/// Takes the requests of later starts. Keeps little of what a caller sends, waits for nobody, and
/// serves few at once while the others wait in line. Needs an event loop; interface thread.
class WishServer {
 public:
  /// `socket` is one that listens. `handle` is called from the event loop for each request.
  WishServer(FileDescriptor socket, std::function<void(const Request&, Reply)> handle,
             std::chrono::milliseconds patience = std::chrono::seconds(5));
  WishServer(const WishServer&) = delete;
  WishServer& operator=(const WishServer&) = delete;

 private:
  void takeWaiting();
  void serve(QLocalSocket& socket);
  void readRequest(QLocalSocket& socket);

  std::function<void(const Request&, Reply)> handle_;
  std::chrono::milliseconds patience_;  ///< with callers that say nothing
  int served_ = 0;
  QLocalServer server_;
};

}  // namespace tarnwick
