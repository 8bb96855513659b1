#include "tables/packed_record.h"

#include <bit>
#include <charconv>
#include <optional>

#include "core/text.h"

namespace tallwick {
namespace {

constexpr bool Digit(char character) {
  return character >= '0' && character <= '9';
}

constexpr std::uint64_t EachByte(std::uint8_t byte) {
  return byte * 0x0101010101010101U;
}

// Eight characters at once, digits behind blanks: their number, and the bytes that are blanks. Nullopt for
// others.
struct EightPlaces {
  std::uint64_t number;
  std::uint64_t blanks;  // all bits of each
};
std::optional<EightPlaces> EightPlacesIn(const char* text) {
  if constexpr (std::endian::native != std::endian::little) return std::nullopt;
  std::uint64_t word = 0;  // the first character in the lowest byte
  std::memcpy(&word, text, sizeof word);
  // A digit has the bit 0x10, a blank is a zero without it.
  const std::uint64_t blanks = ~(word >> 4) & EachByte(1);
  const std::uint64_t blank_bytes = blanks * 0xFF;
  const std::uint64_t digits = word | EachByte(0x10);
  const bool known = (digits & EachByte(0xF0)) == EachByte(0x30) &&
                     ((digits + EachByte(0x06)) & EachByte(0xF0)) == EachByte(0x30) &&
                     (word & blank_bytes & EachByte(0x0F)) == 0;
  if (!known || (blank_bytes & (blank_bytes + 1)) != 0) return std::nullopt;
  // Neighbours are joined: pairs, then fours, then all eight.
  std::uint64_t number = digits - EachByte('0');
  number = (number * 10 + (number >> 8)) & 0x00FF00FF00FF00FFU;
  number = (number * 100 + (number >> 16)) & 0x0000FFFF0000FFFFU;
  number = (number * 10000 + (number >> 32)) & 0xFFFFFFFFU;
  return EightPlaces{number, blank_bytes};
}

// At least eight places: blanks, then at least one digit. Nullopt for anything else.
std::optional<std::int64_t> WholeNumberIn(std::string_view places) {
  const std::optional<EightPlaces> last = EightPlacesIn(places.data() + places.size() - 8);
  if (!last) return std::nullopt;
  std::int64_t number = 0;
  bool begun = false;
  for (const char place : places.substr(0, places.size() - 8)) {
    if (!Digit(place) && (place != ' ' || begun)) return std::nullopt;
    begun = begun || place != ' ';
    number = number * 10 + (place == ' ' ? 0 : place - '0');
  }
  const bool no_digit = !begun && last->blanks == EachByte(0xFF);
  if (no_digit || (begun && last->blanks != 0)) return std::nullopt;
  return number * 100'000'000 + static_cast<std::int64_t>(last->number);
}

}  // namespace

PackedFields::PackedFields(const TableBase& table) : fields_(table.Data().FieldList(table.Handle())) {}

PackedField PackedFields::Find(std::string_view name, char type) {
  std::size_t offset = 1;  // behind the deletion mark
  for (const FieldProperties& field : fields_) {
    const auto width = static_cast<std::size_t>(field.width);
    if (EqualsIgnoreCase(field.name, name) && field.type == type) return {offset, width};
    offset += width;
  }
  if (missing_.empty()) missing_ = name;
  return {};
}

PackedPeriod PackedFields::FindPeriod(const std::string& prefix, const std::string& suffix) {
  return {Find(prefix + "MO" + suffix, 'N'), Find(prefix + "DA" + suffix, 'N'),
          Find(prefix + "YR" + suffix, 'N')};
}

std::int32_t AnyNumberIn(std::string_view field) {
  const std::string_view text = Trim(field);
  std::int32_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

Currency MoneyIn(std::string_view field) {
  const std::size_t point = field.size() < 11 || field.size() > 16 ? 0 : field.size() - 3;
  if (point > 0 && field[point] == '.' && Digit(field[point + 1]) && Digit(field[point + 2])) {
    const std::optional<std::int64_t> dollars = WholeNumberIn(field.substr(0, point));
    if (dollars)
      return Currency::FromCents(*dollars * 100 + (field[point + 1] - '0') * 10 + (field[point + 2] - '0'));
  }
  // Zero bytes come from a damaged disk; only blanks are an empty amount.
  if (field.find('\0') != std::string_view::npos) return Currency::Overflow();
  const std::string_view text = Trim(field);
  return text.empty() ? Currency() : Currency::Parse(text).value_or(Currency::Overflow());
}

char AnyStatusIn(std::string_view field) {
  const std::string_view text = Trim(field);
  return text.empty() ? ' ' : text.size() == 1 ? text[0] : '?';
}

}  // namespace tallwick
