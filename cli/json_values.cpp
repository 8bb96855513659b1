#include "cli/json_values.h"

#include <algorithm>
#include <cstdio>

#include "core/text.h"

namespace tallwick::cli {

std::string MoneyText(Currency amount) {
  return amount.ToText(2);
}

std::string IsoDate(const Date& date) {
  if (date.IsEmpty()) return {};
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", date.year, date.month, date.day);
  return text;
}

Json PeriodJson(const Period& period) {
  return {{"month", period.month}, {"day", period.day}, {"year", period.year}, {"key", MakeKey(period)}};
}

namespace {

Json NumberJson(clsKVRData& store, DataHandle data, const FieldProperties& field, FieldHandle handle) {
  if (field.type != 'B' && field.decimals == 0) return store.GetIntegerByPointer(data, handle);
  // More decimals than money has come from other programs' tables: their digits are given as they are.
  if (field.decimals > 4) return Trim(store.GetNumberFieldRawValueByPointer(data, handle));
  return MoneyText(store.GetCurrencyFieldValueByPointer(data, handle));
}

}  // namespace

Json FieldJson(clsKVRData& store, DataHandle data, const FieldProperties& field, Trimming trimming) {
  const FieldHandle handle = store.FindField(data, field.name);
  switch (field.type) {
    case 'N':
    case 'F':
    case 'B':
    case 'I':
      return NumberJson(store, data, field, handle);
    case 'D':
      return IsoDate(store.GetDateByPointer(data, handle));
    case 'L':
      return store.GetBooleanFieldValueByPointer(data, handle);
    case 'M':
      return store.GetMemoFieldValueByPointer(data, handle);
    default:
      break;
  }
  const std::string raw = store.GetStringFieldRawValueByPointer(data, handle);
  return trimming == Trimming::kRight ? TrimRight(raw) : Trim(raw);
}

Json RecordJson(clsKVRData& store, DataHandle data, const std::vector<FieldProperties>& fields,
                Trimming trimming) {
  Json record = Json::object();
  for (const FieldProperties& field : fields) record[field.name] = FieldJson(store, data, field, trimming);
  return record;
}

std::string PlainText(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_boolean()) return value.get<bool>() ? "T" : "F";
  return value.dump();
}

std::string FieldLines(const Json& record) {
  std::size_t width = 0;
  for (const auto& [name, value] : record.items()) width = std::max(width, name.size());
  std::string lines;
  for (const auto& [name, value] : record.items()) {
    const std::string text = PlainText(value);
    if (!text.empty()) lines += (lines.empty() ? "" : "\n") + PadRight(name, width) + " = " + text;
  }
  return lines;
}

}  // namespace tallwick::cli
