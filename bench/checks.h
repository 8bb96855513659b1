// The checks that every measurement works on: a believable office's, the same at every run and on every
// machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tallwick::bench {

// A period as tables hold it; all zero when there is none.
struct PeriodNumbers {
  int month = 0;
  int day = 0;
  int year = 0;
  int Key() const { return year * 10000 + month * 100 + day; }
};

struct Check {
  std::string number;  // digits, right-aligned in 12
  std::string dated;   // "CCYYMMDD"
  std::string payee;
  std::string address1;
  std::string address2;
  std::string city;
  std::int64_t cents = 0;
  PeriodNumbers accounting;
  PeriodNumbers statement;  // set for cleared checks
  std::string status;       // "O", "C", "V" or "S"
  std::string control;
  std::string voucher;
  std::string file_number;
  std::string tin;
  std::string reason;  // of voided and stopped checks
};

// Hands each field of a check, in the order of the table, to the function for its kind: `text(const
// std::string&)`, `cents(std::int64_t)` or `number(int)`.
template <typename Text, typename Cents, typename Number>
void ForEachField(const Check& check, Text text, Cents cents, Number number) {
  for (const std::string* value :
       {&check.number, &check.dated, &check.payee, &check.address1, &check.address2, &check.city})
    text(*value);
  cents(check.cents);
  for (const int value :
       {check.accounting.month, check.accounting.year, check.statement.month, check.statement.year})
    number(value);
  for (const std::string* value :
       {&check.status, &check.control, &check.voucher, &check.file_number, &check.tin})
    text(*value);
  number(check.accounting.day);
  number(check.statement.day);
  text(check.reason);
}

// `count` checks with numbers from `first` on, in the order in which an office would post them.
std::vector<Check> MakeChecks(std::uint32_t first, std::uint32_t count);

// The numbers of `checks` in a random order, at most `most` of them.
std::vector<std::string> ShuffledNumbers(const std::vector<Check>& checks, std::size_t most);

}  // namespace tallwick::bench
