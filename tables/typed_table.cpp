// Single values between a table's buffer and a record's members.

#include "tables/typed_table.h"

#include "core/text.h"

namespace tallwick {

namespace {

constexpr std::int64_t kTenThousand = 10'000;
// Whole numbers travel as money, which is exact; beyond this they would leave its range.
constexpr std::int64_t kMaxWholeNumber = 100'000'000'000'000;

// Reads a field into the member it belongs to.
struct Reader {
  clsKVRData& data;
  DataHandle table;
  FieldHandle field;
  TextForm form;

  void operator()(std::string* value) const { *value = Text(); }
  void operator()(Currency* value) const { *value = data.GetCurrencyFieldValueByPointer(table, field); }
  void operator()(Date* value) const { *value = data.GetDateByPointer(table, field); }
  void operator()(std::int32_t* value) const {
    *value = static_cast<std::int32_t>(data.GetIntegerByPointer(table, field));
  }
  void operator()(std::int64_t* value) const {
    *value = data.GetCurrencyFieldValueByPointer(table, field).TenThousandths() / kTenThousand;
  }
  void operator()(bool* value) const { *value = data.GetBooleanFieldValueByPointer(table, field); }

  std::string Text() const {
    if (data.GetFieldTypeByPointer(table, field) == 'M') return data.GetMemoFieldValueByPointer(table, field);
    if (form != TextForm::kAsStored) return data.GetStringFieldValueByPointer(table, field);
    return std::string(TrimRight(data.GetStringFieldRawValueByPointer(table, field)));
  }
};

// Writes a member into its field.
struct Writer {
  clsKVRData& data;
  DataHandle table;
  FieldHandle field;
  const FieldLayout& layout;
  TextForm form;

  int operator()(const std::string* value) const {
    if (layout.type == 'M') return data.SetMemoFieldValueByPointer(table, field, *value);
    std::string_view trimmed = form == TextForm::kAsStored ? TrimRight(*value) : Trim(*value);
    if (form == TextForm::kNumber && IsAllDigits(trimmed)) {
      return data.SetStringFieldValueByPointer(table, field,
                                               PadLeft(trimmed, static_cast<std::size_t>(layout.width)));
    }
    return data.SetStringFieldValueByPointer(table, field, trimmed);
  }
  int operator()(const Currency* value) const {
    return data.SetCurrencyFieldValueByPointer(table, field, *value);
  }
  int operator()(const Date* value) const { return data.SetDateByPointer(table, field, *value); }
  int operator()(const std::int32_t* value) const {
    return data.SetNumberFieldValueByPointer(table, field, *value);
  }
  int operator()(const std::int64_t* value) const {
    const bool in_range = *value > -kMaxWholeNumber && kMaxWholeNumber > *value;
    return data.SetCurrencyFieldValueByPointer(
        table, field, in_range ? Currency::FromTenThousandths(*value * kTenThousand) : Currency::Overflow());
  }
  int operator()(const bool* value) const { return data.SetBooleanFieldValueByPointer(table, field, *value); }
};

// Whether the field reads as the member's value already.
struct SameAs {
  const Reader& reader;

  bool operator()(const std::string* value) const {
    if (reader.data.GetFieldTypeByPointer(reader.table, reader.field) == 'M') return reader.Text() == *value;
    return reader.Text() == (reader.form == TextForm::kAsStored ? TrimRight(*value) : Trim(*value));
  }
  template <class Value>
  bool operator()(const Value* value) const {
    Value stored{};
    reader(&stored);
    return stored == *value;
  }
};

}  // namespace

void ReadValue(clsKVRData& data, DataHandle table, FieldHandle field, TextForm form, const ValueRef& value) {
  std::visit(Reader{data, table, field, form}, value);
}

int WriteValue(clsKVRData& data, DataHandle table, FieldHandle field, const FieldLayout& layout,
               TextForm form, const ValueRef& value) {
  Reader reader{data, table, field, form};
  if (std::visit(SameAs{reader}, value)) return engine::kSuccess;
  return std::visit(Writer{data, table, field, layout, form}, value);
}

}  // namespace tallwick
