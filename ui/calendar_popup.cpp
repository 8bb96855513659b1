#include "ui/calendar_popup.h"

#include <QScreen>
#include <QTextCharFormat>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/date.h"
#include "core/period.h"
#include "ui/style.h"

namespace tallwick {

CalendarPopup::CalendarPopup(QLineEdit& field, bool period)
    : QFrame(&field, Qt::Popup), field_(field), calendar_(new QCalendarWidget(this)), period_(period) {
  setAttribute(Qt::WA_DeleteOnClose);
  setFrameShape(QFrame::StyledPanel);
  calendar_->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
  calendar_->setHorizontalHeaderFormat(QCalendarWidget::ShortDayNames);
  for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday}) calendar_->setWeekdayTextFormat(day, {});
  for (const auto& [button, icon] : {std::pair("qt_calendar_prevmonth", "arrow_left"),
                                     std::pair("qt_calendar_nextmonth", "arrow_right")}) {
    if (auto* arrow = calendar_->findChild<QToolButton*>(button)) arrow->setIcon(DrawnIcon(icon));
  }
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->addWidget(calendar_);

  RunState scratch;  // the form's own state is none of this reading's business
  const Period shown = ParsePeriod(field.text().toStdString(), 1, scratch);
  month_only_ = period && shown.month != 0 && shown.day == 0;
  const QDate date(shown.year, shown.month, std::max(shown.day, 1));
  if (date.isValid()) calendar_->setSelectedDate(date);
  connect(calendar_, &QCalendarWidget::activated, this, &CalendarPopup::Choose);
  connect(calendar_, &QCalendarWidget::clicked, this, &CalendarPopup::Choose);
}

void CalendarPopup::Open() {
  adjustSize();
  QPoint place = field_.mapToGlobal(QPoint(0, field_.height()));
  const QRect screen = field_.screen()->availableGeometry();
  if (place.y() + height() > screen.bottom()) place.setY(field_.mapToGlobal(QPoint(0, 0)).y() - height());
  place.setX(std::min(place.x(), screen.right() - width()));
  move(place);
  show();
  calendar_->setFocus(Qt::PopupFocusReason);
}

void CalendarPopup::Choose(const QDate& date) {
  const Date chosen{date.year(), date.month(), date.day()};
  const Period period{chosen.month, month_only_ ? 0 : chosen.day, chosen.year};
  emit Chosen(QString::fromStdString(period_ ? ShortForm(period) : DisplayDate(chosen)));
  close();
}

}  // namespace tallwick
