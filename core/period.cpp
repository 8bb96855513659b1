#include "core/period.h"

#include <algorithm>
#include <array>

#include "core/text.h"
#include "core/text_format.h"

namespace tallwick {

namespace {

// February has 28 days in every year: a period never ends on 29 February.
constexpr std::array<std::int32_t, 12> kMonthLengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
constexpr std::string_view kMessageTitle = "Escrow Accounting Date Periods";

bool IsMonth(std::int32_t month) {
  return month >= 1 && month <= 12;
}

// Where the text is to be split: at the first separator of the list that occurs anywhere, whatever stands
// before it.
std::size_t FindSeparator(std::string_view text) {
  for (const char separator : {'-', '/', '.', ',', ' '}) {
    const std::size_t position = text.find(separator);
    if (position != std::string_view::npos) return position;
  }
  return std::string_view::npos;
}

// The number at the front of a piece, 0 where there is none. Numbers too long for any period stay at a large
// value.
std::int32_t LeadingNumber(std::string_view piece) {
  constexpr std::int32_t kLarge = 1'000'000;
  std::int32_t value = 0;
  for (const char digit : Trim(piece)) {
    if (!IsDigit(digit)) break;
    value = std::min(value * 10 + (digit - '0'), kLarge);
  }
  return value;
}

// The numbers as typed, without a look at their ranges; an empty period where no separator occurs.
Period SplitTyped(std::string_view text) {
  const std::size_t first = FindSeparator(text);
  if (first == std::string_view::npos) return {};
  const std::string_view rest = text.substr(first + 1);
  const std::size_t second = FindSeparator(rest);
  const bool has_day = second != std::string_view::npos;
  Period period;
  period.month = LeadingNumber(text.substr(0, first));
  period.day = has_day ? LeadingNumber(rest.substr(0, second)) : 0;
  period.year = LeadingNumber(has_day ? rest.substr(second + 1) : rest);
  if (period.year < 100) period.year += period.year < 50 ? 2000 : 1900;
  return period;
}

bool IsPossible(const Period& period) {
  if (period.year < kFirstPeriodYear || period.year > kLastPeriodYear || !IsMonth(period.month)) return false;
  return period.day <= kMonthLengths[static_cast<std::size_t>(period.month - 1)];
}

}  // namespace

Period SplitKey(std::int32_t key) {
  Period period;
  period.year = key / 10000;
  period.month = (key - period.year * 10000) / 100;
  period.day = key - period.year * 10000 - period.month * 100;
  return period;
}

Period AsProposed(Period accounting) {
  if (accounting.month == 2) accounting.day = std::min(accounting.day, kMonthLengths[1]);
  return accounting;
}

Period ParsePeriod(std::string_view text, std::int32_t bank_day, RunState& run) {
  const Period period = SplitTyped(Trim(text));
  const bool possible = IsPossible(period);
  run.period_valid = possible && (period.day == 0) == (bank_day == 0);
  return possible ? period : Period{};
}

std::string InvalidPeriodMessage(std::string_view text, std::int32_t bank_day) {
  return "The escrow period " + std::string(text) + " is invalid.\r" +
         (bank_day != 0 ? "You must specify the period as a month, day and year seperated "
                        : "You must specify the period as a month and year seperated ") +
         "by - / , . or a space.";
}

void ReportInvalidPeriod(std::string_view text, std::int32_t bank_day, MessageBoxes& boxes) {
  if (!Trim(text).empty()) boxes.Critical(kMessageTitle, InvalidPeriodMessage(text, bank_day));
}

std::string ShortForm(const Period& period) {
  if (!IsMonth(period.month)) return std::string(10, ' ');
  std::string text = std::to_string(period.month) + '-';
  if (period.day != 0) text += std::to_string(period.day) + '-';
  return text + std::to_string(period.year);
}

std::string ShownPeriod(const Period& period) {
  return period.IsEmpty() ? std::string() : ShortForm(period);
}

std::string LongForm(const Period& period) {
  if (!IsMonth(period.month)) return std::string(14, ' ');
  std::string text = std::string(MonthName(period.month)) + ' ';
  if (period.day != 0) text += std::to_string(period.day) + ", ";
  return text + std::to_string(period.year);
}

}  // namespace tallwick
