#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <chrono>
#include <functional>
#include <memory>

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
             std::chrono::milliseconds patience = std::chrono::seconds(2));
  WishServer(const WishServer&) = delete;
  WishServer& operator=(const WishServer&) = delete;
  ~WishServer();

 private:
  void takeWaiting();
  void serve(int connection);
  void readRequest(QLocalSocket& socket);

  FileDescriptor socket_;
  std::function<void(const Request&, Reply)> handle_;
  std::chrono::milliseconds patience_;  ///< with callers that say nothing
  int served_ = 0;
  QObject callers_;  ///< the parent of their sockets
  std::unique_ptr<QSocketNotifier> waiting_;
};

}  // namespace tarnwick
