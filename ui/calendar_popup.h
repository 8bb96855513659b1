// The calendar under a date or period field: days, or the months of a year where the field takes no day.
// Opens at what stands in the field, closes on Esc or a click beside it.
#pragma once

#include <QCalendarWidget>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QVBoxLayout>

#include "core/form.h"
#include "core/period.h"

namespace tallwick {

class CalendarPopup : public QFrame {
  Q_OBJECT

 public:
  // What the control is says what is chosen: "mm/dd/ccyy" for a date field, the short period form for a
  // period field, without a day where the control is `month_only`.
  CalendarPopup(QLineEdit& field, const Control& control);
  // Shows itself below the field and deletes itself when it is closed.
  void Open();

 signals:
  void Chosen(const QString& text);

 protected:
  // Page keys turn the year of the months, Enter takes one.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void AddDays(QVBoxLayout& column, const QDate& shown);
  void AddMonths(QVBoxLayout& column, const QDate& shown);
  void TurnYear(int years);
  void ChooseDay(const QDate& date);
  void ChooseMonth();

  QLineEdit& field_;
  bool period_;
  QCalendarWidget* calendar_ = nullptr;
  // Of the months: January to December, row by row.
  QTableWidget* months_ = nullptr;
  QLabel* year_label_ = nullptr;
  int year_ = 0;
};

}  // namespace tallwick
