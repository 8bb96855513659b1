#include "core/text.h"

#include <algorithm>

namespace tallwick {

namespace {

char Upper(char character) {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

char Lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

std::string Mapped(std::string_view text, char (*map)(char)) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), map);
  return result;
}

}  // namespace

std::string ToUpper(std::string_view text) {
  return Mapped(text, Upper);
}

std::string ToLower(std::string_view text) {
  return Mapped(text, Lower);
}

bool EqualsIgnoreCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return Upper(a) == Upper(b); });
}

std::string PadRight(std::string_view text, std::size_t width) {
  std::string result(text);
  if (result.size() < width) result.append(width - result.size(), ' ');
  return result;
}

std::string PadLeft(std::string_view text, std::size_t width) {
  std::string result(text);
  if (result.size() < width) result.insert(0, width - result.size(), ' ');
  return result;
}

bool IsAllDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

std::optional<int> SmallNumber(std::string_view text) {
  if (!IsAllDigits(text) || text.size() > 4) return std::nullopt;
  int value = 0;
  for (char digit : text) value = value * 10 + (digit - '0');
  return value;
}

std::vector<std::string> Split(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  std::size_t start = 0;
  for (std::size_t end = text.find(separator); end != std::string_view::npos;
       end = text.find(separator, start)) {
    pieces.emplace_back(text.substr(start, end - start));
    start = end + 1;
  }
  pieces.emplace_back(text.substr(start));
  return pieces;
}

std::string ZeroPadded(long long value, std::size_t width) {
  std::string digits = std::to_string(value);
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  return digits;
}

std::string Quoted(std::string_view text) {
  return '"' + std::string(text) + '"';
}

}  // namespace tallwick
