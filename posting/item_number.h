// Numbers of checks and vouchers as they are typed. The bank, positive pay and the numbering read "020005" as
// 20005, so a number of digits is stored without leading zeros. Other programs may have stored some with
// them: these are found under either form and keep their own, as do numbers with letters or signs.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/text.h"

namespace tallwick {

inline constexpr std::size_t kNumberWidth = 12;  // characters of a stored number
inline constexpr long long kGreatestNumber = 999'999'999'999;

// The number as a value; nullopt when it is not made of digits, or has more than are stored.
std::optional<long long> NumberValue(std::string_view number);

// The number as a new one is stored: "20005" for "020005", "0" for "00"; any other text only trimmed.
std::string CountedNumber(std::string_view typed);

// What is wrong with a new number, in words that begin with `label`; "" when nothing is, and for a blank one.
std::string NumberProblem(std::string_view label, std::string_view typed);

// On the record of the number, or on one whose number differs from it in leading zeros only; false when there
// is neither.
template <class Table>
bool SeekCounted(Table& table, std::string_view typed) {
  if (table.SeekNumber(typed)) return true;
  std::string number = CountedNumber(typed);
  if (!IsAllDigits(number)) return false;
  for (; number.size() <= kNumberWidth; number.insert(0, 1, '0'))
    if (table.SeekNumber(number)) return true;
  return false;
}

}  // namespace tallwick
