// Field look-up and the getters.

#include "core/encoding.h"
#include "core/text.h"
#include "store/clsKVRData.h"

namespace tallwick {

namespace {

constexpr std::string_view kDisplayDate = "mm/dd/ccyy";

std::string_view Bytes(const engine::Field4& field) {
  return {engine::f4ptr(field), static_cast<std::size_t>(engine::f4len(field))};
}

// The value without the blanks around it. Most fields end in many, which go here one by one before the
// general trim.
std::string_view TrimmedBytes(const engine::Field4& field) {
  std::string_view bytes = Bytes(field);
  while (!bytes.empty() && bytes.back() == ' ') bytes.remove_suffix(1);
  return Trim(bytes);
}

FieldProperties PropertiesOf(const engine::Field4& field) {
  return {engine::f4name(field), engine::f4type(field), engine::f4len(field), engine::f4decimals(field)};
}

}  // namespace

// --- Look-up ---

bool clsKVRData::FieldExist(DataHandle data, std::string_view field) {
  if (FindField(data, field) != 0) return true;
  ports_.boxes.Critical("Field Name", Quoted(field) + " not a valid field name.");
  return false;
}

FieldHandle clsKVRData::GetFieldPointer(DataHandle data, std::string_view field) {
  FieldHandle found = FindField(data, field);
  if (found == 0) {
    ports_.boxes.Critical("Field Name", Quoted(field) + " not valid field name for " + DatabaseName(data));
  }
  return found;
}

std::optional<FieldProperties> clsKVRData::GetFieldProperties(DataHandle data, std::string_view field) {
  return GetFieldPropertiesByPointer(data, GetFieldPointer(data, field));
}

std::optional<FieldProperties> clsKVRData::GetFieldPropertiesByPointer(DataHandle data,
                                                                       FieldHandle field) const {
  const engine::Field4* found = FindField4(data, field);
  return found ? std::optional(PropertiesOf(*found)) : std::nullopt;
}

char clsKVRData::GetFieldTypeByPointer(DataHandle data, FieldHandle field) const {
  const engine::Field4* found = FindField4(data, field);
  return found ? engine::f4type(*found) : '\0';
}

std::vector<FieldProperties> clsKVRData::FieldList(DataHandle data) const {
  std::vector<FieldProperties> list;
  if (const OpenTable* table = Find(data)) {
    for (const engine::Field4* field : table->fields) list.push_back(PropertiesOf(*field));
  }
  return list;
}

// --- Getters by handle ---

std::string clsKVRData::GetStringFieldValueByPointer(DataHandle data, FieldHandle field) {
  const engine::Field4* found = FindField4(data, field);
  return found ? FromWindows1252(TrimmedBytes(*found)) : std::string();
}

std::string clsKVRData::GetStringFieldRawValueByPointer(DataHandle data, FieldHandle field) {
  const engine::Field4* found = FindField4(data, field);
  return found ? FromWindows1252(Bytes(*found)) : std::string();
}

std::string clsKVRData::GetDateFieldValueByPointer(DataHandle data, FieldHandle field) {
  const engine::Field4* found = FindField4(data, field);
  if (!found) return {};
  std::string_view stored = TrimmedBytes(*found);
  return stored.empty() ? std::string() : engine::date4format(stored, kDisplayDate);
}

std::string clsKVRData::GetDateFieldRawValueByPointer(DataHandle data, FieldHandle field) {
  return GetStringFieldRawValueByPointer(data, field);
}

Date clsKVRData::GetDateByPointer(DataHandle data, FieldHandle field) {
  const engine::Field4* found = FindField4(data, field);
  return found ? ParseStoredDate(Bytes(*found)).value_or(Date()) : Date();
}

// Lower case letters stand in tables of other programs.
bool clsKVRData::GetBooleanFieldValueByPointer(DataHandle data, FieldHandle field) {
  const engine::Field4* found = FindField4(data, field);
  if (!found) return false;
  char stored = Bytes(*found).front();
  return stored == 'T' || stored == 'Y' || stored == 't' || stored == 'y';
}

double clsKVRData::GetNumberFieldValueByPointer(DataHandle data, FieldHandle field) {
  return GetDoubleFieldValueByPointer(data, field);
}

std::string clsKVRData::GetNumberFieldRawValueByPointer(DataHandle data, FieldHandle field) {
  return GetStringFieldRawValueByPointer(data, field);
}

std::int64_t clsKVRData::GetIntegerByPointer(DataHandle data, FieldHandle field) {
  const engine::Field4* found = FindField4(data, field);
  return found ? engine::f4long(*found) : 0;
}

double clsKVRData::GetDoubleFieldValueByPointer(DataHandle data, FieldHandle field) {
  const engine::Field4* found = FindField4(data, field);
  return found ? engine::f4double(*found) : 0.0;
}

Currency clsKVRData::GetCurrencyFieldValueByPointer(DataHandle data, FieldHandle field) {
  const engine::Field4* found = FindField4(data, field);
  return found ? engine::f4currency(*found) : Currency();
}

std::string clsKVRData::GetMemoFieldValueByPointer(DataHandle data, FieldHandle field) {
  engine::Field4* found = FindField4(data, field);
  if (!found) return {};
  engine::code4errorCode(*engine_, engine::kSuccess);
  std::string bytes = engine::f4memoPtr(*found);
  Finish(engine::kSuccess);
  if (last_error_ < 0) {
    ports_.boxes.Critical("Memo Error", "An error occurred retrieving data.\r\n\r\nDatabase: " +
                                            DatabaseName(data) + "\r\n\r\nField: " + engine::f4name(*found));
    return {};
  }
  return FromWindows1252(bytes);
}

FieldValue clsKVRData::GetFieldValueByPointer(DataHandle data, FieldHandle field) {
  char type = GetFieldTypeByPointer(data, field);
  switch (type) {
    case '\0':
      return {};
    case 'C':
      return GetStringFieldValueByPointer(data, field);
    case 'D':
      return GetDateFieldValueByPointer(data, field);
    case 'M':
      return GetMemoFieldValueByPointer(data, field);
    case 'B':
      return GetCurrencyFieldValueByPointer(data, field);
    case 'N':
      return static_cast<std::int32_t>(GetIntegerByPointer(data, field));
    default:
      ports_.boxes.Critical("Field Value", std::string(1, type) + " not handled...");
      return {};
  }
}

// --- Getters by name ---

std::string clsKVRData::GetStringFieldValue(DataHandle data, std::string_view field) {
  return GetStringFieldValueByPointer(data, FindField(data, field));
}

std::string clsKVRData::GetStringFieldRawValue(DataHandle data, std::string_view field) {
  return GetStringFieldRawValueByPointer(data, FindField(data, field));
}

std::string clsKVRData::GetDateFieldValue(DataHandle data, std::string_view field) {
  return GetDateFieldValueByPointer(data, FindField(data, field));
}

std::string clsKVRData::GetDateFieldRawValue(DataHandle data, std::string_view field) {
  return GetDateFieldRawValueByPointer(data, FindField(data, field));
}

bool clsKVRData::GetBooleanFieldValue(DataHandle data, std::string_view field) {
  return GetBooleanFieldValueByPointer(data, FindField(data, field));
}

double clsKVRData::GetNumberFieldValue(DataHandle data, std::string_view field) {
  return GetNumberFieldValueByPointer(data, FindField(data, field));
}

std::string clsKVRData::GetNumberFieldRawValue(DataHandle data, std::string_view field) {
  return GetNumberFieldRawValueByPointer(data, FindField(data, field));
}

double clsKVRData::GetDoubleFieldValue(DataHandle data, std::string_view field) {
  return GetDoubleFieldValueByPointer(data, FindField(data, field));
}

Currency clsKVRData::GetCurrencyFieldValue(DataHandle data, std::string_view field) {
  return GetCurrencyFieldValueByPointer(data, FindField(data, field));
}

std::string clsKVRData::GetMemoFieldValue(DataHandle data, std::string_view field) {
  return GetMemoFieldValueByPointer(data, FindField(data, field));
}

}  // namespace tallwick
