// Accounting, statement and reconciliation periods: month, day and year, where day 0 means a month-and-year
// period.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/currency.h"
#include "core/message_boxes.h"

namespace tallwick {

struct Period {
  std::int32_t month = 0;  // 1 to 12; (0, 0, 0) is "no period"
  std::int32_t day = 0;    // 0 = no day
  std::int32_t year = 0;   // four digits

  bool IsEmpty() const { return month == 0 && day == 0 && year == 0; }
  friend bool operator==(const Period&, const Period&) = default;
};

// The years that periods have.
inline constexpr std::int32_t kFirstPeriodYear = 1975;
inline constexpr std::int32_t kLastPeriodYear = 2095;

// State that lives for the whole run of the program. Start-up makes the one object and hands it down.
struct RunState {
  // True when the last text parsed was a valid period of the bank's form.
  bool period_valid = false;
  // The last question asked about advancing an accounting date, so that it is not asked twice in a run.
  std::string last_advance_question;
  // Where set, a blank accounting period on a posting screen takes the bank's accounting period.
  bool default_period = false;
};

// year * 10000 + month * 100 + day: the one form in which periods are compared.
constexpr std::int32_t MakeKey(std::int32_t year, std::int32_t month, std::int32_t day) {
  return year * 10000 + month * 100 + day;
}
constexpr std::int32_t MakeKey(const Period& period) {
  return MakeKey(period.year, period.month, period.day);
}
Period SplitKey(std::int32_t key);

// What is proposed for an accounting date: the date, and for a 29 February, to which dates advance, the 28th:
// as a period it could not be read.
Period AsProposed(Period accounting);

// Reads a period typed by a person: month, day (or none) and year, separated by the first of - / . , or a
// blank that occurs. Years below 50 are 20xx, from 50 to 99 19xx; 1975 to 2095 are accepted, and February has
// 28 days always. `bank_day` is the bank's accounting day (BANKACCTDA): 0 = month-and-year form. Sets
// run.period_valid. An impossible period gives (0, 0, 0); one of the other form keeps its numbers with the
// flag false.
Period ParsePeriod(std::string_view text, std::int32_t bank_day, RunState& run);

// The message for a text that is no period of the bank's form.
std::string InvalidPeriodMessage(std::string_view text, std::int32_t bank_day);
// Shows it as a critical box titled "Escrow Accounting Date Periods"; nothing for a blank text.
void ReportInvalidPeriod(std::string_view text, std::int32_t bank_day, MessageBoxes& boxes);

// "3-15-2024" or "3-2024"; 10 blanks for a month outside 1 to 12.
std::string ShortForm(const Period& period);
// The short form; "" for no period.
std::string ShownPeriod(const Period& period);
// "March 15, 2024" or "March 2024"; 14 blanks for a month outside 1 to 12.
std::string LongForm(const Period& period);

}  // namespace tallwick
