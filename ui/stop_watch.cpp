#include "ui/stop_watch.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>

namespace tallwick {
namespace {

constexpr int kBetweenLooks = 40;  // milliseconds

class InputGate : public QObject {
 public:
  bool StopSeen() const { return stop_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    switch (event->type()) {
      case QEvent::KeyPress:
      case QEvent::ShortcutOverride:
        stop_ = stop_ || static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
        return true;
      case QEvent::MouseButtonPress: {
        if (watched->isWindowType()) return false;  // on its way to a widget
        const auto* button = qobject_cast<QAbstractButton*>(watched);
        stop_ = stop_ || (button != nullptr && button->property("stops").toBool());
        return true;
      }
      case QEvent::KeyRelease:
      case QEvent::Shortcut:
      case QEvent::MouseButtonRelease:
      case QEvent::MouseButtonDblClick:
      case QEvent::Wheel:
      case QEvent::ContextMenu:
      case QEvent::Close:
        event->ignore();
        return true;
      default:
        return false;
    }
  }

 private:
  bool stop_ = false;
};

}  // namespace

bool StopWatch::StopAsked() {
  if (since_last_.isValid() && since_last_.elapsed() < kBetweenLooks) return false;
  InputGate gate;
  qApp->installEventFilter(&gate);
  QApplication::processEvents();
  qApp->removeEventFilter(&gate);
  since_last_.start();
  return gate.StopSeen();
}

}  // namespace tallwick
