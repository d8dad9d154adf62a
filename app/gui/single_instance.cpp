#include "app/gui/single_instance.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QLocalSocket>
#include <cerrno>

namespace quillora {
namespace {

constexpr int kTimeoutMs = 2000;

// True when the socket file is ours: a socket in a shared folder such as /tmp
// could have been put there by someone else to catch our command lines.
bool OwnedByUs(const QString& path) {
  struct stat st {};
  return ::lstat(path.toLocal8Bit().constData(), &st) == 0 && S_ISSOCK(st.st_mode) &&
         st.st_uid == ::getuid();
}

// True when the process at the other end of a connection runs as this user.
bool PeerIsUs(const QLocalSocket& socket) {
  ucred peer{};
  socklen_t size = sizeof peer;
  return ::getsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED,
                      &peer, &size) == 0 &&
         peer.uid == ::getuid();
}

// The folder of the socket, made private to the user (0700) when missing.
// False when it is anything else: not a folder (a symbolic link included),
// another user's, or open to others; nobody else can then have planted the
// socket in it.
bool PrivateFolder(const QString& folder) {
  const QByteArray path = folder.toLocal8Bit();
  if (::mkdir(path.constData(), 0700) != 0 && errno != EEXIST) return false;
  struct stat st {};
  return ::lstat(path.constData(), &st) == 0 && S_ISDIR(st.st_mode) &&
         st.st_uid == ::getuid() && (st.st_mode & 077) == 0;
}

// $XDG_RUNTIME_DIR/quillora/quillora.sock, else a folder of the user's in the
// temporary folder; empty when that folder is not private.
QString DefaultSocketPath() {
  const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
  QString folder;
  if (runtime.startsWith('/') && QDir(QString::fromLocal8Bit(runtime)).exists()) {
    folder = QString::fromLocal8Bit(runtime) + "/quillora";
  } else {
    folder = QDir::tempPath() + QString("/quillora-%1").arg(::getuid());
  }
  return PrivateFolder(folder) ? folder + "/quillora.sock" : QString();
}

}  // namespace

SingleInstance::SingleInstance(QString socket_path, QObject* parent)
    : QObject(parent),
      socket_path_(socket_path.isEmpty() ? DefaultSocketPath() : std::move(socket_path)) {
  // No private folder: this copy runs alone, neither handing over nor
  // listening.
  connect(&server_, &QLocalServer::newConnection, this, &SingleInstance::Accept);
}

bool SingleInstance::HandOver(const QStringList& arguments) {
  if (socket_path_.isEmpty() || !OwnedByUs(socket_path_)) return false;
  QLocalSocket socket;
  socket.connectToServer(socket_path_);
  if (!socket.waitForConnected(kTimeoutMs) || !PeerIsUs(socket)) return false;
  // The words joined by NUL characters, UTF-8; an empty message only asks the
  // running copy to come forward.
  socket.write(arguments.join(QChar(0)).toUtf8());
  socket.flush();
  socket.disconnectFromServer();
  if (socket.state() != QLocalSocket::UnconnectedState) {
    socket.waitForDisconnected(kTimeoutMs);
  }
  return true;
}

bool SingleInstance::Listen() {
  if (socket_path_.isEmpty()) return false;
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  if (!server_.listen(socket_path_)) {
    // A socket left by a copy that crashed: nobody answers it.
    // A socket of another user is never taken for ours nor removed.
    if (!OwnedByUs(socket_path_)) return false;
    QLocalSocket probe;
    probe.connectToServer(socket_path_);
    if (probe.waitForConnected(200)) return false;
    QLocalServer::removeServer(socket_path_);
    if (!server_.listen(socket_path_)) return false;
  }
  ::chmod(socket_path_.toLocal8Bit().constData(), 0600);
  return true;
}

void SingleInstance::Accept() {
  while (QLocalSocket* socket = server_.nextPendingConnection()) {
    // Only this user's own copies may hand over a command line.
    if (!PeerIsUs(*socket)) {
      socket->abort();
      socket->deleteLater();
      continue;
    }
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    auto deliver = [this, socket] {
      const QString text = QString::fromUtf8(socket->readAll());
      emit CommandLineReceived(text.isEmpty() ? QStringList()
                                              : text.split(QChar(0), Qt::KeepEmptyParts));
    };
    connect(socket, &QLocalSocket::disconnected, this, deliver);
  }
}

}  // namespace quillora
