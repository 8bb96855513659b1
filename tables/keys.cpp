#include "tables/keys.h"

#include <algorithm>

#include "core/encoding.h"
#include "core/text.h"

namespace tallwick {

namespace {

constexpr int kNumberWidth = 12;

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Characters of a UTF-8 text: its bytes without the continuing ones.
std::size_t CharacterCount(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

std::string UpperKey(std::string_view text) {
  if (IsAscii(text)) return ToUpper(text);
  std::optional<std::string> bytes = ToWindows1252(text);
  if (!bytes) return std::string(text);  // no key of any table equals it
  for (char& byte : *bytes) byte = static_cast<char>(UpperWindows1252(static_cast<unsigned char>(byte)));
  return FromWindows1252(*bytes);
}

std::string KeyPart(std::string_view text, int width) {
  std::string part = UpperKey(text.substr(0, text.find_last_not_of(' ') + 1));
  std::size_t length = CharacterCount(part);
  if (length < static_cast<std::size_t>(width)) part.append(static_cast<std::size_t>(width) - length, ' ');
  return part;
}

std::string StoredNumber(std::string_view number) {
  number = Trim(number);
  return IsAllDigits(number) ? PadLeft(number, kNumberWidth) : std::string(number);
}

std::string DepositReference(std::string_view dated, std::string_view sequence, int item) {
  return PadLeft(Trim(dated), 8) + PadLeft(Trim(sequence), 2) + PadLeft(std::to_string(item), 2);
}

bool SameKey(std::string_view left, std::string_view right) {
  return left == right || UpperKey(TrimRight(left)) == UpperKey(TrimRight(right));
}

}  // namespace tallwick
