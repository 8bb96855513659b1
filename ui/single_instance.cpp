#include "ui/single_instance.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QGuiApplication>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QThread>

namespace tallwick {
namespace {

constexpr int kWaitMs = 2000;  // for a first instance that is itself just starting
constexpr unsigned long kPauseMs = 20;

QString SafeName(QString name) {
  return name.replace(QRegularExpression("[^A-Za-z0-9_.-]"), "_");
}

}  // namespace

SingleInstance::SingleInstance(const QString& name)
    : name_(SafeName("tallwick-escrow-" + name)), lock_(QDir::temp().filePath(name_ + ".lock")) {
  lock_.setStaleLockTime(0);  // only the death of its process makes the lock free
  connect(&server_, &QLocalServer::newConnection, this, [this] {
    while (QLocalSocket* socket = server_.nextPendingConnection()) {
      connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
      emit ShowAsked();
    }
  });
}

bool SingleInstance::IsFirst() {
  if (lock_.tryLock(0)) {
    QLocalServer::removeServer(name_);  // left behind by one that was killed
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    server_.listen(name_);
    return true;
  }
  // A lock file that cannot be made says nothing of another instance: better two than none.
  if (lock_.error() != QLockFile::LockFailedError) return true;
  // Should anybody look for the program's window by its title, it is not this one's.
  QGuiApplication::setApplicationDisplayName("unwanted instance");
  AskFirst();
  return false;
}

// Tries for a while: the first may not listen yet.
void SingleInstance::AskFirst() const {
  for (const QDeadlineTimer left(kWaitMs); !left.hasExpired(); QThread::msleep(kPauseMs)) {
    QLocalSocket socket;
    socket.connectToServer(name_);
    if (socket.waitForConnected(kWaitMs)) return;
  }
}

}  // namespace tallwick
