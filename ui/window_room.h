// Windows fit on their screen. Sizes are laid out for a large one and remembered from another; whatever
// opens, dialogs of the system's toolkit included, gets no more than the room that its screen has.
#pragma once

#include <QObject>

class QApplication;

namespace tallwick {

class WindowRoom : public QObject {
  Q_OBJECT

 public:
  // Looks after every window of the program from now on, for as long as it lives.
  explicit WindowRoom(QApplication& app);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tallwick
