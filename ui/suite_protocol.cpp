#include "ui/suite_protocol.h"

#include <QDir>
#include <QJsonDocument>
#include <QLocalSocket>

namespace tallwick {

QString SuiteSocketName() {
  QString named = qEnvironmentVariable("TALLWICK_SUITE_SOCKET");
  if (!named.isEmpty()) return named;
  const QString user = qEnvironmentVariable("USER", qEnvironmentVariable("USERNAME", QDir::home().dirName()));
  return "tallwick-suite-" + user;
}

QByteArray LineOf(const QJsonObject& object) {
  return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QJsonObject ObjectOf(const QByteArray& line) {
  return QJsonDocument::fromJson(line).object();
}

QJsonObject AskSuite(const QString& socket_name, const QJsonObject& request) {
  QLocalSocket socket;
  socket.connectToServer(socket_name);
  if (!socket.waitForConnected(kSuiteWaitMs)) return {};
  socket.write(LineOf(request));
  while (!socket.canReadLine()) {
    if (!socket.waitForReadyRead(kSuiteWaitMs)) return {};
  }
  return ObjectOf(socket.readLine());
}

}  // namespace tallwick
