#include "posting/item_number.h"

#include <algorithm>
#include <cctype>

namespace tallwick {
namespace {

// Letters beyond ASCII are longer than one byte.
bool IsLetterOrDigit(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 || std::isalnum(byte) != 0;
}

}  // namespace

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
  const bool inner_sign = std::all_of(number.begin(), number.end(),
                                      [](char c) { return IsLetterOrDigit(c) || c == '-' || c == '/'; });
  const bool begins_well = number.empty() || IsLetterOrDigit(number.front());
  if (inner_sign && begins_well) return {};
  return std::string(label) + " " + Quoted(number) +
         " is not a number.  Type digits, without blanks or signs between or before them.";
}

}  // namespace tallwick
