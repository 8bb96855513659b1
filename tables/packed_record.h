// Fields of a table's current record, decoded from its bytes without a copy: for passes over a million
// records that need a few fields of each. A value that is not in its usual form is read as the store reads
// it.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

#include "core/currency.h"
#include "core/period.h"
#include "tables/table_base.h"

namespace tallwick {

using RecordView = std::span<const std::uint8_t>;

// Where a field stands in its record.
struct PackedField {
  std::size_t offset = 0;
  std::size_t width = 0;

  std::string_view Text(RecordView record) const {
    return {reinterpret_cast<const char*>(record.data()) + offset, width};
  }
};

struct PackedPeriod {
  PackedField month, day, year;
};

// Finds the places of an open table's fields.
class PackedFields {
 public:
  explicit PackedFields(const TableBase& table);
  // A field that the table has not, or has as another type, makes Missing() name it.
  PackedField Find(std::string_view name, char type);
  // Of the three fields that begin with `prefix` ("CHXACCT") and end with `suffix` ("1").
  PackedPeriod FindPeriod(const std::string& prefix, const std::string& suffix = {});
  const std::string& Missing() const { return missing_; }

 private:
  std::vector<FieldProperties> fields_;
  std::string missing_;
};

inline bool IsLive(RecordView record) {
  return !record.empty() && record[0] != '*';
}
// 0 for a blank field; Overflow() for one that holds no number.
Currency MoneyIn(std::string_view field);

inline bool IsBlank(std::string_view field) {
  constexpr std::uint64_t kBlanks = 0x2020202020202020U;
  const std::size_t width = field.size();
  if (width >= 8 && width <= 16) {
    // Two words, which may overlap.
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    std::memcpy(&first, field.data(), 8);
    std::memcpy(&last, field.data() + width - 8, 8);
    return first == kBlanks && last == kBlanks;
  }
  for (const char character : field) {
    if (character != ' ') return false;
  }
  return true;
}

// A number of any form, as the store reads it.
std::int32_t AnyNumberIn(std::string_view field);
// The same for a day, a month or a year, quickly where it stands as usual: in two or four places, the digits
// at the right.
inline std::int32_t NumberIn(std::string_view field) {
  const auto digit = [&](std::size_t at) { return static_cast<unsigned>(field[at] - '0'); };
  if (field.size() == 2) {
    const unsigned tens = field[0] == ' ' ? 0 : digit(0);
    if (tens <= 9 && digit(1) <= 9) return static_cast<std::int32_t>(tens * 10 + digit(1));
  } else if (field.size() == 4 && digit(0) <= 9 && digit(1) <= 9 && digit(2) <= 9 && digit(3) <= 9) {
    return static_cast<std::int32_t>(digit(0) * 1000 + digit(1) * 100 + digit(2) * 10 + digit(3));
  }
  return IsBlank(field) ? 0 : AnyNumberIn(field);
}

// The one letter of a status; ' ' for none, '?' for more than one letter.
char AnyStatusIn(std::string_view field);
inline char StatusIn(std::string_view field) {
  return field.size() == 2 && field[1] == ' ' ? field[0] : AnyStatusIn(field);
}

inline Period PeriodIn(RecordView record, const PackedPeriod& place) {
  return {NumberIn(place.month.Text(record)), NumberIn(place.day.Text(record)),
          NumberIn(place.year.Text(record))};
}

}  // namespace tallwick
