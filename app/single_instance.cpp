#include "app/single_instance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <utility>

namespace tarnwick {
namespace {

constexpr int answerMilliseconds = 5000;
constexpr char showYourself[] = "show\n";

/// A socket's path must be short, which a folder of the user's need not be.
QString socketPath(const QString& folder) {
  const QByteArray name =
      QCryptographicHash::hash(folder.toUtf8(), QCryptographicHash::Sha256).toHex().left(16);
  const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
  const bool usable = QDir::isAbsolutePath(runtime) && QDir(runtime).exists();
  return QDir(usable ? runtime : folder)
      .filePath(QStringLiteral("tarnwick-") + QString::fromLatin1(name) + QStringLiteral(".sock"));
}

bool askOther(const QString& path) {
  QLocalSocket socket;
  socket.connectToServer(path);
  if (!socket.waitForConnected(answerMilliseconds)) return false;
  socket.write(showYourself);
  socket.flush();
  // It answers when its window has been told to show.
  return socket.waitForReadyRead(answerMilliseconds);
}

}  // namespace

class SingleInstance::Guard {
 public:
  explicit Guard(const QString& folder)
      : lock_(QDir(folder).filePath(QStringLiteral("instance.lock"))), path_(socketPath(folder)) {
    // Only the death of its process makes a lock stale, however long that has been running.
    lock_.setStaleLockTime(0);
  }

  Role enter(std::function<void()> onRaise) {
    // A folder that cannot be written to is no reason not to start.
    if (!lock_.tryLock() && lock_.error() == QLockFile::LockFailedError) {
      return askOther(path_) ? Role::raisedOther : Role::otherIsSilent;
    }
    listen(std::move(onRaise));
    return Role::first;
  }

 private:
  void listen(std::function<void()> onRaise) {
    // What a process that crashed has left behind.
    QFile::remove(path_);
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&server_, &QLocalServer::newConnection, &server_,
                     [this, onRaise = std::move(onRaise)] {
                       while (QLocalSocket* socket = server_.nextPendingConnection()) {
                         serve(socket, onRaise);
                       }
                     });
    server_.listen(path_);
  }

  static void serve(QLocalSocket* socket, const std::function<void()>& onRaise) {
    QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    QObject::connect(socket, &QLocalSocket::readyRead, socket, [socket, onRaise] {
      if (!socket->canReadLine()) return;
      if (socket->readLine() == showYourself) onRaise();
      socket->write("done\n");
      socket->disconnectFromServer();
    });
  }

  QLockFile lock_;
  QString path_;
  QLocalServer server_;
};

SingleInstance::SingleInstance(const QString& folder) : guard_(std::make_unique<Guard>(folder)) {}

SingleInstance::~SingleInstance() = default;

SingleInstance::Role SingleInstance::enter(std::function<void()> onRaise) {
  return guard_->enter(std::move(onRaise));
}

}  // namespace tarnwick
