// Small helpers on texts: trimming blanks, case, padding, splitting. ASCII only; anything wider goes through
// encoding.h.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tallwick {

// Cut blanks, tabs, NULs and line ends.
std::string_view Trim(std::string_view text);
std::string_view TrimRight(std::string_view text);
std::string ToUpper(std::string_view text);
std::string ToLower(std::string_view text);
bool EqualsIgnoreCase(std::string_view left, std::string_view right);
// Blank-padded to `width`; longer texts stay as they are.
std::string PadRight(std::string_view text, std::size_t width);
std::string PadLeft(std::string_view text, std::size_t width);
bool IsDigit(char character);
bool IsAllDigits(std::string_view text);  // false for ""
// One piece more than there are separators, so "" gives one empty piece.
std::vector<std::string> Split(std::string_view text, char separator);
// Digits with leading zeros: (5, 2) gives "05". `value` is not negative; wider values keep all their digits.
std::string ZeroPadded(long long value, std::size_t width);
// The text between two double quotes.
std::string Quoted(std::string_view text);

}  // namespace tallwick
