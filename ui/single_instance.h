// One running desktop per user and suite: a second start brings the first to the front.
#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>

namespace tallwick {

class SingleInstance : public QObject {
  Q_OBJECT

 public:
  // `name` tells programs that may run side by side apart.
  explicit SingleInstance(const QString& name);

  // True for the first instance, which listens from now on. A second one has asked the first to come to the
  // front.
  bool IsFirst();

 signals:
  void ShowAsked();

 private:
  void AskFirst() const;

  QString name_;
  QLockFile lock_;
  QLocalServer server_;
};

}  // namespace tallwick
