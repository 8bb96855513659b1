#include "core/date.h"

#include <algorithm>
#include <chrono>

#include "core/text.h"

namespace tallwick {

namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;

// Julian day number of 1 January 1970, day 0 of sys_days.
constexpr std::int32_t kEpoch = 2'440'588;
// 1 January of the year 1 and 31 December 9999.
constexpr std::int32_t kFirstJulianDay = 1'721'426;
constexpr std::int32_t kLastJulianDay = 5'373'484;

constexpr std::string_view kEmptyMaskTrimmed = "/  /";

year_month_day Calendar(const Date& date) {
  return {std::chrono::year(date.year), std::chrono::month(static_cast<unsigned>(date.month)),
          std::chrono::day(static_cast<unsigned>(date.day))};
}

int Number(std::string_view digits) {
  int value = 0;
  for (const char digit : digits) value = value * 10 + (digit - '0');
  return value;
}

// Takes the digits at the front away.
std::string_view TakeDigits(std::string_view& text) {
  std::size_t count = 0;
  while (count < text.size() && IsDigit(text[count])) ++count;
  const std::string_view digits = text.substr(0, count);
  text.remove_prefix(count);
  return digits;
}

// Takes a separator away: one of / - . with blanks around it, or blanks alone. False where there is none.
bool TakeSeparator(std::string_view& text) {
  const std::size_t before = text.size();
  text = text.substr(std::min(text.find_first_not_of(' '), text.size()));
  if (!text.empty() && (text.front() == '/' || text.front() == '-' || text.front() == '.')) {
    text.remove_prefix(1);
    text = text.substr(std::min(text.find_first_not_of(' '), text.size()));
  }
  return text.size() < before;
}

// nullopt where the year has neither two nor four digits or the day does not exist.
std::optional<Date> TypedDate(std::string_view month, std::string_view day, std::string_view year) {
  const auto is_short = [](std::string_view digits) { return digits.size() == 1 || digits.size() == 2; };
  if (!is_short(month) || !is_short(day) || (year.size() != 2 && year.size() != 4)) return std::nullopt;
  Date date{Number(year), Number(month), Number(day)};
  if (year.size() == 2) date.year += date.year < 50 ? 2000 : 1900;
  return IsValidDate(date) ? std::optional(date) : std::nullopt;
}

}  // namespace

bool IsValidDate(const Date& date) {
  if (date.year < 1 || date.year > 9999 || date.month < 1 || date.day < 1) return false;
  if (date.month > 12 || date.day > 31) return false;
  return Calendar(date).ok();
}

std::int32_t JulianDay(const Date& date) {
  if (!IsValidDate(date)) return 0;
  return kEpoch + static_cast<std::int32_t>(sys_days(Calendar(date)).time_since_epoch().count());
}

Date DateFromJulianDay(std::int32_t julian) {
  if (julian < kFirstJulianDay || julian > kLastJulianDay) return {};
  const year_month_day day{sys_days(std::chrono::days(julian - kEpoch))};
  return {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
          static_cast<int>(static_cast<unsigned>(day.day()))};
}

int DayOfWeek(const Date& date) {
  // Julian day 0 was a Monday.
  return IsValidDate(date) ? (JulianDay(date) + 1) % 7 : 0;
}

std::string StoredDate(const Date& date) {
  if (!IsValidDate(date)) return std::string(8, ' ');
  return ZeroPadded(date.year, 4) + ZeroPadded(date.month, 2) + ZeroPadded(date.day, 2);
}

std::optional<Date> ParseStoredDate(std::string_view text) {
  if (text.size() <= 8 && text.find_first_not_of(' ') == std::string_view::npos) return Date{};
  if (text.size() != 8 || !IsAllDigits(text)) return std::nullopt;
  const Date date{Number(text.substr(0, 4)), Number(text.substr(4, 2)), Number(text.substr(6, 2))};
  return IsValidDate(date) ? std::optional(date) : std::nullopt;
}

std::string DisplayDate(const Date& date) {
  if (!IsValidDate(date)) return {};
  return ZeroPadded(date.month, 2) + '/' + ZeroPadded(date.day, 2) + '/' + ZeroPadded(date.year, 4);
}

std::optional<Date> ParseDisplayDate(std::string_view text) {
  text = Trim(text);
  if (text.empty() || text == kEmptyMaskTrimmed) return Date{};
  if (IsAllDigits(text)) {
    if (text.size() != 6 && text.size() != 8) return std::nullopt;
    return TypedDate(text.substr(0, 2), text.substr(2, 2), text.substr(4));
  }
  const std::string_view month = TakeDigits(text);
  if (!TakeSeparator(text)) return std::nullopt;
  const std::string_view day = TakeDigits(text);
  if (!TakeSeparator(text)) return std::nullopt;
  const std::string_view year = TakeDigits(text);
  return text.empty() ? TypedDate(month, day, year) : std::nullopt;
}

}  // namespace tallwick
