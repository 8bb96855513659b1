// Small helpers on texts: trimming blanks, case, padding, splitting. ASCII only; anything wider goes through
// encoding.h.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallwick {

// These are asked for every character of every field that is read, so they stand here and not behind a call.
inline bool IsBlank(char character) {
  return character == ' ' || character == '\0' || character == '\t' || character == '\r' || character == '\n';
}
inline bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

// Cut blanks, tabs, NULs and line ends.
inline std::string_view TrimRight(std::string_view text) {
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}
inline std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  return TrimRight(text);
}
std::string ToUpper(std::string_view text);
std::string ToLower(std::string_view text);
bool EqualsIgnoreCase(std::string_view left, std::string_view right);
// Blank-padded to `width`; longer texts stay as they are.
std::string PadRight(std::string_view text, std::size_t width);
std::string PadLeft(std::string_view text, std::size_t width);
bool IsAllDigits(std::string_view text);  // false for ""
// The value of 1 to 4 digits; nullopt for anything else.
std::optional<int> SmallNumber(std::string_view text);
// One piece more than there are separators, so "" gives one empty piece.
std::vector<std::string> Split(std::string_view text, char separator);
// Digits with leading zeros: (5, 2) gives "05". `value` is not negative; wider values keep all their digits.
std::string ZeroPadded(long long value, std::size_t width);
// The text between two double quotes.
std::string Quoted(std::string_view text);

}  // namespace tallwick
