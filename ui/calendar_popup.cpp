#include "ui/calendar_popup.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QScreen>
#include <QTextCharFormat>
#include <QToolButton>
#include <algorithm>

#include "core/date.h"
#include "ui/style.h"

namespace tallwick {
namespace {

constexpr int kMonthColumns = 3;
constexpr int kMonths = 12;
constexpr QSize kMonthCell(88, 32);

// What the field holds, today where that is no date.
QDate ShownDate(const QString& text, bool period) {
  QDate date;
  if (period) {
    RunState scratch;  // the form's own state is none of this reading's business
    const Period read = ParsePeriod(text.toStdString(), 1, scratch);
    date = QDate(read.year, read.month, std::max(read.day, 1));
  } else {
    const Date read = ParseDisplayDate(text.toStdString()).value_or(Date{});
    date = QDate(read.year, read.month, read.day);
  }
  return date.isValid() ? date : QDate::currentDate();
}

}  // namespace

CalendarPopup::CalendarPopup(QLineEdit& field, const Control& control)
    : QFrame(&field, Qt::Popup), field_(field), period_(control.kind == ControlKind::kPeriod) {
  setAttribute(Qt::WA_DeleteOnClose);
  setFrameShape(QFrame::StyledPanel);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(4, 4, 4, 4);
  const QDate shown = ShownDate(field.text(), period_);
  period_&& control.month_only ? AddMonths(*column, shown) : AddDays(*column, shown);
}

void CalendarPopup::AddDays(QVBoxLayout& column, const QDate& shown) {
  calendar_ = new QCalendarWidget(this);
  calendar_->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
  calendar_->setHorizontalHeaderFormat(QCalendarWidget::ShortDayNames);
  for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday}) calendar_->setWeekdayTextFormat(day, {});
  for (const auto& [button, icon] : {std::pair("qt_calendar_prevmonth", "arrow_left"),
                                     std::pair("qt_calendar_nextmonth", "arrow_right")}) {
    if (auto* arrow = calendar_->findChild<QToolButton*>(button)) arrow->setIcon(DrawnIcon(icon));
  }
  calendar_->setDateRange(QDate(kFirstPeriodYear, 1, 1), QDate(kLastPeriodYear, kMonths, 31));
  calendar_->setSelectedDate(shown);
  connect(calendar_, &QCalendarWidget::activated, this, &CalendarPopup::ChooseDay);
  connect(calendar_, &QCalendarWidget::clicked, this, &CalendarPopup::ChooseDay);
  column.addWidget(calendar_);
}

void CalendarPopup::AddMonths(QVBoxLayout& column, const QDate& shown) {
  year_label_ = new QLabel(this);
  year_label_->setAlignment(Qt::AlignCenter);
  auto* row = new QHBoxLayout;
  const auto add_arrow = [&](const char* icon, const QString& name, int years) {
    auto* arrow = new QToolButton(this);
    arrow->setIcon(DrawnIcon(icon));
    arrow->setAccessibleName(name);
    arrow->setFocusPolicy(Qt::NoFocus);
    connect(arrow, &QToolButton::clicked, this, [this, years] { TurnYear(years); });
    row->addWidget(arrow);
  };
  add_arrow("arrow_left", tr("Previous year"), -1);
  row->addWidget(year_label_, 1);
  add_arrow("arrow_right", tr("Next year"), 1);
  column.addLayout(row);

  months_ = new QTableWidget(kMonths / kMonthColumns, kMonthColumns, this);
  months_->setObjectName("months");
  months_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  months_->setSelectionMode(QAbstractItemView::SingleSelection);
  months_->setShowGrid(false);
  months_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  months_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  for (QHeaderView* header : {months_->horizontalHeader(), months_->verticalHeader()}) header->hide();
  months_->horizontalHeader()->setDefaultSectionSize(kMonthCell.width());
  months_->verticalHeader()->setDefaultSectionSize(kMonthCell.height());
  months_->setFixedSize(kMonthCell.width() * kMonthColumns, kMonthCell.height() * kMonths / kMonthColumns);
  for (int month = 0; month < kMonths; ++month) {
    auto* item = new QTableWidgetItem(QLocale::c().standaloneMonthName(month + 1));
    item->setTextAlignment(Qt::AlignCenter);
    months_->setItem(month / kMonthColumns, month % kMonthColumns, item);
  }
  months_->setCurrentCell((shown.month() - 1) / kMonthColumns, (shown.month() - 1) % kMonthColumns);
  months_->installEventFilter(this);
  connect(months_, &QTableWidget::cellClicked, this, &CalendarPopup::ChooseMonth);
  column.addWidget(months_);
  year_ = shown.year();
  TurnYear(0);
}

void CalendarPopup::Open() {
  adjustSize();
  QPoint place = field_.mapToGlobal(QPoint(0, field_.height()));
  const QRect screen = field_.screen()->availableGeometry();
  if (place.y() + height() > screen.bottom()) place.setY(field_.mapToGlobal(QPoint(0, 0)).y() - height());
  place.setX(std::min(place.x(), screen.right() - width()));
  move(place);
  show();
  (months_ != nullptr ? static_cast<QWidget*>(months_) : calendar_)->setFocus(Qt::PopupFocusReason);
}

bool CalendarPopup::eventFilter(QObject* watched, QEvent* event) {
  if (watched != months_ || event->type() != QEvent::KeyPress) return false;
  switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_PageUp:
      TurnYear(-1);
      return true;
    case Qt::Key_PageDown:
      TurnYear(1);
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      ChooseMonth();
      return true;
    default:
      return false;
  }
}

void CalendarPopup::TurnYear(int years) {
  year_ = std::clamp(year_ + years, kFirstPeriodYear, kLastPeriodYear);
  year_label_->setText(QString::number(year_));
}

void CalendarPopup::ChooseDay(const QDate& date) {
  const Date chosen{date.year(), date.month(), date.day()};
  const std::string text =
      period_ ? ShortForm(Period{chosen.month, chosen.day, chosen.year}) : DisplayDate(chosen);
  emit Chosen(QString::fromStdString(text));
  close();
}

void CalendarPopup::ChooseMonth() {
  const int month = months_->currentRow() * kMonthColumns + months_->currentColumn() + 1;
  emit Chosen(QString::fromStdString(ShortForm(Period{month, 0, year_})));
  close();
}

}  // namespace tallwick
