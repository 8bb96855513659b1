#include "ui/flow_layout.h"

#include <algorithm>

namespace tallwick {

QLayoutItem* FlowLayout::itemAt(int index) const {
  return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
  if (itemAt(index) == nullptr) return nullptr;
  const auto at = items_.begin() + index;
  QLayoutItem* item = at->release();
  items_.erase(at);
  return item;
}

template <class Put>
int FlowLayout::Arrange(const QRect& place, const Put& put) const {
  QPoint at = place.topLeft();
  int line_height = 0;
  for (const auto& item : items_) {
    if (item->isEmpty()) continue;
    const QSize size = item->sizeHint();
    if (at.x() > place.left() && at.x() + size.width() > place.left() + place.width()) {
      at = QPoint(place.left(), at.y() + line_height + spacing());
      line_height = 0;
    }
    put(*item, QRect(at, size));
    at.rx() += size.width() + spacing();
    line_height = std::max(line_height, size.height());
  }
  return at.y() + line_height - place.top();
}

int FlowLayout::heightForWidth(int width) const {
  return Arrange(QRect(0, 0, width, 0), [](QLayoutItem&, const QRect&) {});
}

QSize FlowLayout::sizeHint() const {
  QSize size(0, 0);
  Arrange(QRect(0, 0, QLAYOUTSIZE_MAX, 0), [&](QLayoutItem&, const QRect& place) {
    size = size.expandedTo({place.right() + 1, place.height()});
  });
  return size;
}

QSize FlowLayout::minimumSize() const {
  QSize size(0, 0);
  for (const auto& item : items_) size = size.expandedTo(item->minimumSize());
  return size;
}

void FlowLayout::setGeometry(const QRect& place) {
  QLayout::setGeometry(place);
  Arrange(place, [](QLayoutItem& item, const QRect& at) { item.setGeometry(at); });
}

}  // namespace tallwick
