// The stand-in's socket: answers what programs ask about the company and keeps the list of those that run.
#pragma once

#include <QJsonObject>
#include <QLocalServer>
#include <QObject>
#include <vector>

#include "suite/suite_settings.h"

namespace tallwick {

class SuiteServer : public QObject {
  Q_OBJECT

 public:
  struct Program {
    QString name;
    qint64 process = 0;
  };

  explicit SuiteServer(SuiteSettings settings);
  // False when the socket cannot be had or another suite answers on it. Only this user may connect.
  bool Listen(const QString& socket_name);
  // Takes effect with the next question, as when somebody else logs in at the suite.
  void SetUser(const QString& login, bool security_on);
  const std::vector<Program>& Programs() const { return programs_; }

 signals:
  void Registered(const QString& program, qint64 process);
  void EndAsked();

 private:
  void Serve();
  QJsonObject Answer(const QJsonObject& request);
  QJsonObject State() const;

  SuiteSettings settings_;
  QLocalServer server_;
  std::vector<Program> programs_;
};

}  // namespace tallwick
