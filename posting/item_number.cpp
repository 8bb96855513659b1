#include "posting/item_number.h"

#include <algorithm>

namespace tallwick {

std::optional<long long> NumberValue(std::string_view number) {
  number = Trim(number);
  if (!IsAllDigits(number) || number.size() > kNumberWidth) return std::nullopt;
  long long value = 0;
  for (char digit : number) value = value * 10 + (digit - '0');
  return value;
}

std::string CountedNumber(std::string_view typed) {
  typed = Trim(typed);
  if (IsAllDigits(typed)) typed.remove_prefix(std::min(typed.find_first_not_of('0'), typed.size() - 1));
  return std::string(typed);
}

std::string NumberProblem(std::string_view label, std::string_view typed) {
  const std::string_view number = Trim(typed);
  if (number.empty() || IsAllDigits(number)) return {};
  return std::string(label) + " " + Quoted(number) +
         " is not a number.  Type digits, without letters, blanks or signs.";
}

}  // namespace tallwick
