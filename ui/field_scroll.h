// The fields of an entry, which scroll where the window is too low for all of them; elsewhere it is as high
// as they are. The field that gets the cursor comes into sight.
#pragma once

#include <QScrollArea>

namespace tallwick {

class FieldScroll : public QScrollArea {
  Q_OBJECT

 public:
  // Pixels that the fields leave free at their right: the bar stands there.
  static constexpr int kBarMargin = 16;

  explicit FieldScroll(QWidget* fields);
  ~FieldScroll() override;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace tallwick
