#include "suite/suite_server.h"

#include <QJsonArray>
#include <QLocalSocket>

#include "ui/suite_protocol.h"

namespace tallwick {
namespace {

constexpr qint64 kLongestLine = 4096;  // a longer request is none of ours

}  // namespace

SuiteServer::SuiteServer(SuiteSettings settings) : settings_(std::move(settings)) {
  connect(&server_, &QLocalServer::newConnection, this, &SuiteServer::Serve);
}

bool SuiteServer::Listen(const QString& socket_name) {
  if (!AskSuite(socket_name, {{"ask", "state"}}).isEmpty()) return false;
  QLocalServer::removeServer(socket_name);  // left behind by a suite that was killed
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  return server_.listen(socket_name);
}

void SuiteServer::SetUser(const QString& login, bool security_on) {
  settings_.login = login;
  settings_.security_on = security_on;
}

void SuiteServer::Serve() {
  while (QLocalSocket* socket = server_.nextPendingConnection()) {
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
      while (socket->canReadLine()) socket->write(LineOf(Answer(ObjectOf(socket->readLine()))));
      socket->flush();
      if (socket->bytesAvailable() > kLongestLine) socket->abort();
    });
  }
}

QJsonObject SuiteServer::Answer(const QJsonObject& request) {
  const QString asked = request["ask"].toString();
  if (asked == "state") return State();
  if (asked == "register") {
    const Program program{request["program"].toString(), request["process"].toInteger()};
    programs_.push_back(program);
    emit Registered(program.name, program.process);
    return {{"registered", true}};
  }
  if (asked == "file") {
    const QString number = request["file"].toString().trimmed().toUpper();
    if (!settings_.file_list) return {{"known", QJsonValue::Null}};
    return {{"known", settings_.file_list->contains(number)}};
  }
  if (asked == "files") {
    if (!settings_.file_list) return {{"files", QJsonValue::Null}};
    return {{"files", QJsonArray::fromStringList(*settings_.file_list)}};
  }
  if (asked == "branch") {
    const QString branch = request["branch"].toString();
    if (settings_.branches.contains(branch)) settings_.branch = branch;
    return {{"branch", settings_.branch}};
  }
  if (asked == "quit") {
    emit EndAsked();
    return {{"ended", true}};
  }
  return {{"error", "Unknown question: ask for state, register, file, files, branch or quit."}};
}

QJsonObject SuiteServer::State() const {
  const auto or_data_path = [this](const QString& path) {
    return path.isEmpty() ? settings_.data_path : path;
  };
  return {{"companyName", settings_.company_name},
          {"companyNumber", settings_.company_number},
          {"dataPath", settings_.data_path},
          {"applicationPath", settings_.application_path},
          {"settingsPath", or_data_path(settings_.settings_path)},
          {"updatePath", settings_.update_path},
          {"inactiveBanksPath", or_data_path(settings_.inactive_banks_path)},
          {"branch", settings_.branch},
          {"securityOn", settings_.security_on},
          {"login", settings_.login}};
}

}  // namespace tallwick
