#include "app/wish_server.h"

#include <QLocalSocket>
#include <QPointer>
#include <QTimer>
#include <memory>
#include <string_view>
#include <utility>

namespace tarnwick {
namespace {

constexpr int mostServed = 32;

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
    : handle_(std::move(handle)), patience_(patience) {
  QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] { takeWaiting(); });
  if (socket) server_.listen(qintptr{socket.release()});
}

void WishServer::takeWaiting() {
  while (served_ < mostServed) {
    QLocalSocket* socket = server_.nextPendingConnection();
    if (!socket) return;
    ++served_;
    QObject::connect(socket, &QObject::destroyed, &server_, [this] {
      --served_;
      takeWaiting();
    });
    serve(*socket);
  }
}

void WishServer::serve(QLocalSocket& socket) {
  socket.setReadBufferSize(longestRequest);
  QObject::connect(&socket, &QLocalSocket::disconnected, &socket, &QObject::deleteLater);
  QObject::connect(&socket, &QLocalSocket::readyRead, &socket,
                   [this, &socket] { readRequest(socket); });
  auto* impatience = new QTimer(&socket);
  impatience->setSingleShot(true);
  QObject::connect(impatience, &QTimer::timeout, &socket, [&socket] { socket.abort(); });
  impatience->start(patience_);
  // It may have spoken, or gone, before anybody listened to its signals.
  if (socket.state() != QLocalSocket::ConnectedState) {
    socket.deleteLater();
  } else if (socket.bytesAvailable() > 0) {
    readRequest(socket);
  }
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
