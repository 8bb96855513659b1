// Windows-1252 is Latin-1 but for the bytes 0x80 to 0x9F, which hold the characters of one table.
#include "core/encoding.h"

#include <algorithm>
#include <array>

namespace tallwick {

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr unsigned char kFirstSpecial = 0x80;

// Characters of the bytes 0x80 to 0x9F; 0 = none.
constexpr std::array<char32_t, 32> kSpecial{0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                            0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                            0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                            0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

void AppendUtf8(std::string& text, char32_t character) {
  const auto put = [&text](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (character < 0x80) {
    put(character);
  } else if (character < 0x800) {
    put(0xC0 | (character >> 6));
    put(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    put(0xE0 | (character >> 12));
    put(0x80 | ((character >> 6) & 0x3F));
    put(0x80 | (character & 0x3F));
  } else {
    put(0xF0 | (character >> 18));
    put(0x80 | ((character >> 12) & 0x3F));
    put(0x80 | ((character >> 6) & 0x3F));
    put(0x80 | (character & 0x3F));
  }
}

// Takes the first character away. nullopt, with one byte taken, where the bytes are no UTF-8: overlong forms,
// surrogates and numbers past 0x10FFFF are none.
std::optional<char32_t> TakeCharacter(std::string_view& utf8) {
  const auto first = static_cast<unsigned char>(utf8.front());
  const std::string_view all = utf8;
  utf8.remove_prefix(1);
  if (first < 0x80) return first;
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || all.size() < length) return std::nullopt;
  char32_t character = first & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(all[i]);
    if ((byte & 0xC0) != 0x80) return std::nullopt;
    character = (character << 6) | (byte & 0x3FU);
  }
  const bool overlong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (overlong || surrogate || character > 0x10FFFF) return std::nullopt;
  utf8.remove_prefix(length - 1);
  return character;
}

std::optional<unsigned char> ByteOf(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
    return static_cast<unsigned char>(character);
  const auto* const found = std::find(kSpecial.begin(), kSpecial.end(), character);
  if (found == kSpecial.end()) return std::nullopt;
  return static_cast<unsigned char>(kFirstSpecial + (found - kSpecial.begin()));
}

}  // namespace

std::optional<std::string> ToWindows1252(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  while (!utf8.empty()) {
    const std::optional<char32_t> character = TakeCharacter(utf8);
    const std::optional<unsigned char> byte = character ? ByteOf(*character) : std::nullopt;
    if (!byte) return std::nullopt;
    bytes += static_cast<char>(*byte);
  }
  return bytes;
}

std::string FromWindows1252(std::string_view bytes) {
  std::string utf8;
  utf8.reserve(bytes.size());
  for (const char signed_byte : bytes) {
    const auto byte = static_cast<unsigned char>(signed_byte);
    if (byte < kFirstSpecial || byte >= kFirstSpecial + kSpecial.size()) {
      AppendUtf8(utf8, byte);
    } else {
      const char32_t special = kSpecial[byte - kFirstSpecial];
      AppendUtf8(utf8, special != 0 ? special : kReplacement);
    }
  }
  return utf8;
}

std::string_view WithoutTextMark(std::string_view bytes) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  return bytes.starts_with(kMark) ? bytes.substr(kMark.size()) : bytes;
}

std::string FromTextFile(std::string_view bytes) {
  bytes = WithoutTextMark(bytes);
  std::string_view rest = bytes;
  while (!rest.empty()) {
    if (!TakeCharacter(rest)) return FromWindows1252(bytes);
  }
  return std::string(bytes);
}

std::string FirstCharacterOutside1252(std::string_view utf8) {
  while (!utf8.empty()) {
    const char32_t character = TakeCharacter(utf8).value_or(kReplacement);
    if (ByteOf(character)) continue;
    std::string text;
    AppendUtf8(text, character);
    return text;
  }
  return {};
}

unsigned char UpperWindows1252(unsigned char byte) {
  constexpr unsigned char kDivision = 0xF7;
  const bool lower = (byte >= 'a' && byte <= 'z') || (byte >= 0xE0 && byte <= 0xFE && byte != kDivision);
  if (lower) return static_cast<unsigned char>(byte - 0x20);
  switch (byte) {
    case 0x9A:  // s, z with caron and the oe ligature lie 16 above their capitals
    case 0x9C:
    case 0x9E:
      return static_cast<unsigned char>(byte - 0x10);
    case 0xFF:  // y with diaeresis
      return 0x9F;
    default:
      return byte;
  }
}

}  // namespace tallwick
