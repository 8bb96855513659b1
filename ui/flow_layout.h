// Widgets in a row that goes on in a further line where the window is too narrow for all of them.
#pragma once

#include <QLayout>
#include <memory>
#include <vector>

namespace tallwick {

class FlowLayout : public QLayout {
 public:
  FlowLayout() = default;

  void addItem(QLayoutItem* item) override { items_.emplace_back(item); }
  int count() const override { return static_cast<int>(items_.size()); }
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  Qt::Orientations expandingDirections() const override { return {}; }
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;     // in one line
  QSize minimumSize() const override;  // of the widest
  void setGeometry(const QRect& place) override;

 private:
  // Where each item stands in the place; gives the height that they take.
  template <class Put>
  int Arrange(const QRect& place, const Put& put) const;

  std::vector<std::unique_ptr<QLayoutItem>> items_;
};

}  // namespace tallwick
