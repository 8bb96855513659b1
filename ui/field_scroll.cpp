#include "ui/field_scroll.h"

#include <QApplication>
#include <QEvent>
#include <algorithm>

namespace tallwick {
namespace {

constexpr int kLeastHeight = 96;

}  // namespace

FieldScroll::FieldScroll(QWidget* fields) {
  setWidget(fields);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    if (now != nullptr && widget()->isAncestorOf(now)) ensureWidgetVisible(now, 0);
  });
}

FieldScroll::~FieldScroll() {
  qApp->disconnect(this);  // the fields' end moves the focus
}

QSize FieldScroll::sizeHint() const {
  return widget()->sizeHint();
}

QSize FieldScroll::minimumSizeHint() const {
  return {std::max(widget()->minimumWidth(), widget()->minimumSizeHint().width()), kLeastHeight};
}

// Fields that come and go change its height.
bool FieldScroll::eventFilter(QObject* watched, QEvent* event) {
  if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
  return QScrollArea::eventFilter(watched, event);
}

}  // namespace tallwick
