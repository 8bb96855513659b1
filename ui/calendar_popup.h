// The calendar under a date or period field. Opens at the date in the field, closes on Esc or a click beside
// it.
#pragma once

#include <QCalendarWidget>
#include <QFrame>
#include <QLineEdit>

namespace tallwick {

class CalendarPopup : public QFrame {
  Q_OBJECT

 public:
  // For a period field the text chosen has the short period form, and only month and year where the field
  // holds a month-and-year period now; for a date field it is "mm/dd/ccyy".
  CalendarPopup(QLineEdit& field, bool period);
  // Shows itself below the field and deletes itself when it is closed.
  void Open();

 signals:
  void Chosen(const QString& text);

 private:
  void Choose(const QDate& date);

  QLineEdit& field_;
  QCalendarWidget* calendar_;
  bool period_;
  bool month_only_ = false;
};

}  // namespace tallwick
