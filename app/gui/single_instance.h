// One running copy per user. The first start listens on a local socket
// (0600) in the user's private folder $XDG_RUNTIME_DIR/quillora (0700,
// created when missing; refused when another user owns it or others may
// enter it); a later start hands its command line over that socket to the
// first and ends without showing a window.
#ifndef QUILLORA_APP_GUI_SINGLE_INSTANCE_H_
#define QUILLORA_APP_GUI_SINGLE_INSTANCE_H_

#include <QLocalServer>
#include <QObject>
#include <QString>
#include <QStringList>

namespace quillora {

class SingleInstance : public QObject {
  Q_OBJECT

 public:
  // `socket_path` empty: $XDG_RUNTIME_DIR/quillora/quillora.sock (else a
  // folder in the temporary folder named after the user id). When that
  // folder cannot be made private, the path is empty and this copy runs
  // alone.
  explicit SingleInstance(QString socket_path = {}, QObject* parent = nullptr);

  // Sends `arguments` to a running copy; true when one took them (this copy
  // should then end with exit code 0).
  bool HandOver(const QStringList& arguments);

  // Becomes the running copy: listens for later starts. False when the socket
  // cannot be made.
  bool Listen();

  const QString& socket_path() const { return socket_path_; }

 signals:
  // A later start handed over its command line (empty: only bring forward).
  void CommandLineReceived(const QStringList& arguments);

 private:
  void Accept();

  QString socket_path_;
  QLocalServer server_;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_SINGLE_INSTANCE_H_
