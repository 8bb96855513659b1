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

// Whether characters are a number, or blank, which counts as zero.
bool IsFigure(std::string_view text) {
  if (text.empty()) return true;
  if (text.front() == '-' || text.front() == '+') text.remove_prefix(1);
  std::string digits(text);
  if (const std::size_t point = digits.find('.'); point != std::string::npos) digits.erase(point, 1);
  return !digits.empty() && IsAllDigits(digits);
}

Json NumberJson(clsKVRData& store, DataHandle data, const FieldProperties& field, FieldHandle handle,
                bool raw) {
  const bool binary = field.type == 'B' || field.type == 'I';
  const std::string stored(binary ? "" : Trim(store.GetNumberFieldRawValueByPointer(data, handle)));
  // More decimals than money has come from other programs' tables.
  if ((raw && !IsFigure(stored)) || (!binary && field.decimals > 4)) return stored;
  if (field.type != 'B' && field.decimals == 0) return store.GetIntegerByPointer(data, handle);
  const Currency amount = store.GetCurrencyFieldValueByPointer(data, handle);
  return amount.IsValid() || binary || !raw ? MoneyText(amount) : stored;
}

Json DateJson(clsKVRData& store, DataHandle data, FieldHandle handle, bool raw) {
  const Date date = store.GetDateByPointer(data, handle);
  if (!date.IsEmpty() || !raw) return IsoDate(date);
  const std::string stored(Trim(store.GetStringFieldRawValueByPointer(data, handle)));
  return stored.find_first_not_of('0') == std::string::npos ? "" : stored;
}

}  // namespace

Json FieldJson(clsKVRData& store, DataHandle data, const FieldProperties& field, Trimming trimming) {
  const FieldHandle handle = store.FindField(data, field.name);
  const bool raw = trimming == Trimming::kRight;  // characters that are no value are shown as they stand
  switch (field.type) {
    case 'N':
    case 'F':
    case 'B':
    case 'I':
      return NumberJson(store, data, field, handle, raw);
    case 'D':
      return DateJson(store, data, handle, raw);
    case 'L':
      return store.GetBooleanFieldValueByPointer(data, handle);
    case 'M':
      return store.GetMemoFieldValueByPointer(data, handle);
    default:
      break;
  }
  const std::string text = store.GetStringFieldRawValueByPointer(data, handle);
  return raw ? TrimRight(text) : Trim(text);
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
