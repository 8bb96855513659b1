#include "maintenance/verify_numbers.h"

#include "core/encoding.h"
#include "core/text.h"
#include "tables/record_pass.h"

namespace tallwick {
namespace {

constexpr std::int64_t kMostNamed = 100;

struct NumberField {
  std::string name;
  PackedField place;
};

// Those that money reads exactly, which all of ours are.
std::vector<NumberField> NumberFieldsOf(TableBase& table, PackedFields& places) {
  constexpr int kMostDecimals = 4;
  std::vector<NumberField> fields;
  for (const FieldProperties& field : table.Data().FieldList(table.Handle())) {
    if (field.type == 'N' && field.decimals <= kMostDecimals)
      fields.push_back({field.name, places.Find(field.name, 'N')});
  }
  return fields;
}

}  // namespace

void VerifyNumbers(TableBase& table, std::vector<CompanyProblem>* problems) {
  PackedFields places(table);
  const std::vector<NumberField> fields = NumberFieldsOf(table, places);
  std::int64_t found = 0;
  PassOver(table, places, table.Name(), {}, [&](RecordView record, std::int32_t number) {
    for (const NumberField& field : fields) {
      const std::string_view text = field.place.Text(record);
      // Zero bytes are told for every kind of field.
      if (IsBlank(text) || text.find('\0') != std::string_view::npos) continue;
      if (MoneyIn(text).IsValid() || ++found > kMostNamed) continue;
      problems->push_back({table.Name(),
                           number,
                           field.name + " holds " + Quoted(FromWindows1252(Trim(text))) +
                               ", which is no number: compare the record with the paper and correct it, or "
                               "restore the table from a copy",
                           {}});
    }
  });
  if (found > kMostNamed)
    problems->push_back(
        {table.Name(), 0, std::to_string(found - kMostNamed) + " more fields hold no number", {}});
}

}  // namespace tallwick
