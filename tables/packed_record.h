// Fields of a table's current record, decoded from its bytes without a copy: for passes over a million
// records that need a few fields of each. A value that is not in its usual form is read as the store reads
// it.
#pragma once

#include <cstdint>
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
std::int32_t NumberIn(std::string_view field);
Currency MoneyIn(std::string_view field);
// The one letter of a status; ' ' for none, '?' for more than one letter.
char StatusIn(std::string_view field);
bool IsBlank(std::string_view field);

inline Period PeriodIn(RecordView record, const PackedPeriod& place) {
  return {NumberIn(place.month.Text(record)), NumberIn(place.day.Text(record)),
          NumberIn(place.year.Text(record))};
}

}  // namespace tallwick
