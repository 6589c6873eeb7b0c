#include "app/wish_server.h"

#include <QLocalSocket>
#include <QPointer>
#include <QTimer>
#include <cerrno>
#include <memory>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace tarnwick {
namespace {

using namespace std::chrono_literals;

constexpr int mostServed = 64;
constexpr auto pauseAfterFailure = 1s;

void send(QLocalSocket& socket, std::string_view line) {
  socket.write(line.data(), static_cast<qint64>(line.size()));
}

void finish(QLocalSocket& socket, const Answer& answer) {
  send(socket, answerLine(answer));
  socket.disconnectFromServer();
}

/// What one caller is owed.
struct Debt {
  QPointer<QLocalSocket> socket;
  bool paid = false;
};

}  // namespace

WishServer::WishServer(FileDescriptor socket, std::function<void(const Request&, Reply)> handle,
                       std::chrono::milliseconds patience)
    : socket_(std::move(socket)), handle_(std::move(handle)), patience_(patience) {
  if (!socket_) return;
  waiting_ = std::make_unique<QSocketNotifier>(socket_.get(), QSocketNotifier::Read);
  QObject::connect(waiting_.get(), &QSocketNotifier::activated, &callers_,
                   [this] { takeWaiting(); });
}

WishServer::~WishServer() {
  // They tell of their end.
  for (QObject* caller : callers_.children()) caller->disconnect(&callers_);
}

// Whoever is not taken waits in the system's line, where nothing is read from anybody.
void WishServer::takeWaiting() {
  while (served_ < mostServed) {
    const int connection = ::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (connection < 0 && errno == EAGAIN) break;
    if (connection < 0) {
      // Out of descriptors, perhaps: to try at once and again would take all of the processor.
      waiting_->setEnabled(false);
      QTimer::singleShot(pauseAfterFailure, &callers_, [this] { takeWaiting(); });
      return;
    }
    serve(connection);
  }
  waiting_->setEnabled(served_ < mostServed);
}

void WishServer::serve(int connection) {
  auto* socket = new QLocalSocket(&callers_);
  socket->setReadBufferSize(longestRequest);
  if (!socket->setSocketDescriptor(connection)) {
    ::close(connection);
    delete socket;
    return;
  }
  ++served_;
  QObject::connect(socket, &QObject::destroyed, &callers_, [this] {
    --served_;
    takeWaiting();
  });
  QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
  QObject::connect(socket, &QLocalSocket::readyRead, socket,
                   [this, socket] { readRequest(*socket); });
  auto* impatience = new QTimer(socket);
  impatience->setSingleShot(true);
  QObject::connect(impatience, &QTimer::timeout, socket, [socket] { socket->abort(); });
  impatience->start(patience_);
}

void WishServer::readRequest(QLocalSocket& socket) {
  if (!socket.canReadLine()) {
    if (socket.bytesAvailable() >= qint64{longestRequest}) socket.abort();
    return;
  }
  const std::string line = socket.readLine().toStdString();
  // Nothing more is expected from this caller, and what it sends all the same stays unread.
  QObject::disconnect(&socket, &QLocalSocket::readyRead, nullptr, nullptr);
  delete socket.findChild<QTimer*>();
  const auto request = parseRequest(line);
  if (!request) {
    finish(socket, {ExitCode::failed,
                    "The running Tarnwick does not know this request; it may be of another "
                    "version. Quit it and try again."});
    return;
  }
  const auto debt = std::make_shared<Debt>(Debt{&socket});
  handle_(*request, [debt](const Answer& answer) {
    if (std::exchange(debt->paid, true) || !debt->socket) return;
    finish(*debt->socket, answer);
  });
  if (!debt->paid && debt->socket) send(*debt->socket, workingLine);
}

}  // namespace tarnwick
