// A calendar date and a time of day, with the arithmetic that tables and periods need.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallwick {

// A date of the Gregorian calendar; (0, 0, 0) is "no date".
struct Date {
  int year = 0;
  int month = 0;  // 1 to 12
  int day = 0;    // 1 to the month's length

  bool IsEmpty() const { return year == 0 && month == 0 && day == 0; }
  // The tool takes the zero in the defaulted comparison for a pointer.
  // NOLINTNEXTLINE(modernize-use-nullptr)
  friend auto operator<=>(const Date&, const Date&) = default;
};

struct DateTime {
  Date date;
  int hour = 0;  // 0 to 23
  int minute = 0;
  int second = 0;
  // NOLINTNEXTLINE(modernize-use-nullptr)
  friend auto operator<=>(const DateTime&, const DateTime&) = default;
};

// True for an existing day in the years 1 to 9999 (29 February only in leap years).
bool IsValidDate(const Date& date);

// Julian day number: 15 March 2024 is 2460385; 0 for an empty or invalid date.
std::int32_t JulianDay(const Date& date);
// The empty date for a number outside the years 1 to 9999.
Date DateFromJulianDay(std::int32_t julian);

// 0 = Sunday to 6 = Saturday; 0 also for an empty or invalid date.
int DayOfWeek(const Date& date);

// "CCYYMMDD", the form in which tables hold dates; 8 blanks for the empty date (and for one that does not
// exist).
std::string StoredDate(const Date& date);
// Reads "CCYYMMDD". 8 blanks (or less than 8 characters, all blank) give the empty date; nullopt for anything
// that is no existing day.
std::optional<Date> ParseStoredDate(std::string_view text);

// "mm/dd/ccyy"; "" for the empty date (and for one that does not exist).
std::string DisplayDate(const Date& date);
// Reads a date typed by a person: month, day, year in this order, separated by "/", "-", "." (blanks may
// stand around them) or blanks, or 6 or 8 digits without separators; two-digit years below 50 mean 20xx, from
// 50 on 19xx. The empty text and the empty mask "  /  /    " give the empty date; nullopt for anything that
// is no existing day.
std::optional<Date> ParseDisplayDate(std::string_view text);

}  // namespace tallwick
