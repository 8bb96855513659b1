// The setters. Each either stores the value exactly or leaves the field alone, returns
// engine::kErrorFieldValue and says in LastFieldProblem() what would fit.

#include <charconv>

#include "core/encoding.h"
#include "core/text.h"
#include "store/clsKVRData.h"

namespace tallwick {

namespace {

std::string ShownNumber(double value) {
  char digits[64];
  auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
  return error == std::errc() ? std::string(digits, end) : "the number";
}

// "ccyy-mm-dd" or what a person types; nullopt when it is no date.
std::optional<Date> ReadDate(std::string_view text) {
  text = Trim(text);
  if (text.size() == 10 && text[4] == '-' && text[7] == '-') {
    std::string stored(text.substr(0, 4));
    stored += text.substr(5, 2);
    stored += text.substr(8, 2);
    return ParseStoredDate(stored);
  }
  return ParseDisplayDate(text);
}

// 'T' or 'F'; 0 when the text is no answer.
char ReadSwitch(std::string_view text) {
  std::string word = ToUpper(Trim(text));
  if (word == "T" || word == "Y" || word == "TRUE" || word == "YES") return 'T';
  if (word.empty() || word == "F" || word == "N" || word == "FALSE" || word == "NO") return 'F';
  return 0;
}

// Digits with at most one sign before and one point among them: wider or finer than a currency, as the tables
// of other programs have them.
bool IsPlainNumber(std::string_view text) {
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  std::string digits(text);
  if (const std::size_t point = digits.find('.'); point != std::string::npos) digits.erase(point, 1);
  return IsAllDigits(digits);
}

}  // namespace

int clsKVRData::Refuse(const engine::Field4& field, std::string text) {
  field_problem_ = {engine::f4name(field), std::move(text)};
  return Finish(engine::kErrorFieldValue);
}

int clsKVRData::Assigned(const engine::Field4& field, int code, std::string_view value) {
  if (code != engine::kErrorFieldValue) return Finish(code);
  std::string decimals;
  if (engine::f4decimals(field) > 0) {
    decimals = " with " + std::to_string(engine::f4decimals(field)) + " decimals";
  } else if (engine::f4type(field) == 'N') {
    decimals = " without decimals";
  }
  return Refuse(field, engine::f4name(field) + " cannot hold " + std::string(value) + ": it takes " +
                           std::to_string(engine::f4len(field)) + " characters" + decimals + ".");
}

std::optional<std::string> clsKVRData::Encoded(const engine::Field4& field, std::string_view value) {
  std::optional<std::string> bytes = ToWindows1252(value);
  if (bytes) return bytes;
  Refuse(field, engine::f4name(field) + " cannot hold the character " +
                    Quoted(FirstCharacterOutside1252(value)) + ". Please use another one.");
  return std::nullopt;
}

// Trailing blanks beyond the field's width are no loss.
int clsKVRData::AssignText(engine::Field4& field, std::string_view bytes) {
  auto width = static_cast<std::size_t>(engine::f4len(field));
  if (bytes.size() > width) {
    std::size_t end = bytes.find_last_not_of(' ') + 1;
    if (end > width) {
      return Refuse(field, engine::f4name(field) + " takes " + std::to_string(width) +
                               " characters; the text has " + std::to_string(end) + ".");
    }
    bytes = bytes.substr(0, width);
  }
  return Assigned(field, engine::f4assignNVB(field, bytes), Quoted(FromWindows1252(bytes)));
}

// --- Setters by handle ---

int clsKVRData::SetStringFieldValueByPointer(DataHandle data, FieldHandle field, std::string_view value) {
  engine::Field4* found = FindField4(data, field);
  if (!found) return engine::kErrorFieldName;
  std::optional<std::string> bytes = Encoded(*found, value);
  return bytes ? AssignText(*found, *bytes) : engine::kErrorFieldValue;
}

int clsKVRData::SetDateFieldValueByPointer(DataHandle data, FieldHandle field,
                                           std::string_view display_date) {
  engine::Field4* found = FindField4(data, field);
  if (!found) return engine::kErrorFieldName;
  std::optional<Date> date = ParseDisplayDate(display_date);
  if (date) return SetDateByPointer(data, field, *date);
  return Refuse(*found, engine::f4name(*found) + ": " + Quoted(display_date) +
                            " is no date. Please enter it as month/day/year.");
}

int clsKVRData::SetDateByPointer(DataHandle data, FieldHandle field, const Date& value) {
  engine::Field4* found = FindField4(data, field);
  if (!found) return engine::kErrorFieldName;
  if (!value.IsEmpty() && !IsValidDate(value)) {
    return Refuse(*found, engine::f4name(*found) + ": there is no day " + std::to_string(value.month) + "/" +
                              std::to_string(value.day) + "/" + std::to_string(value.year) + ".");
  }
  return AssignText(*found, StoredDate(value));
}

int clsKVRData::SetBooleanFieldValueByPointer(DataHandle data, FieldHandle field, bool value) {
  engine::Field4* found = FindField4(data, field);
  return found ? AssignText(*found, value ? "T" : "F") : engine::kErrorFieldName;
}

int clsKVRData::SetNumberFieldValueByPointer(DataHandle data, FieldHandle field, std::int32_t value) {
  engine::Field4* found = FindField4(data, field);
  if (!found) return engine::kErrorFieldName;
  return Assigned(*found, engine::f4assignLong(*found, value), std::to_string(value));
}

int clsKVRData::SetDoubleFieldValueByPointer(DataHandle data, FieldHandle field, double value) {
  engine::Field4* found = FindField4(data, field);
  if (!found) return engine::kErrorFieldName;
  return Assigned(*found, engine::f4assignDouble(*found, value), ShownNumber(value));
}

int clsKVRData::SetCurrencyFieldValueByPointer(DataHandle data, FieldHandle field, Currency value) {
  engine::Field4* found = FindField4(data, field);
  if (!found) return engine::kErrorFieldName;
  if (!value.IsValid()) return Refuse(*found, engine::f4name(*found) + ": the amount is too large.");
  return Assigned(*found, engine::f4assignCurrency(*found, value),
                  value.ToText(engine::f4decimals(*found) > 0 ? 2 : 0));
}

int clsKVRData::SetMemoFieldValueByPointer(DataHandle data, FieldHandle field, std::string_view value) {
  engine::Field4* found = FindField4(data, field);
  if (!found) return engine::kErrorFieldName;
  std::optional<std::string> bytes = Encoded(*found, value);
  return bytes ? Finish(engine::f4memoAssign(*found, *bytes)) : engine::kErrorFieldValue;
}

int clsKVRData::SetMemoFieldValueBinaryByPointer(DataHandle data, FieldHandle field, std::string_view bytes) {
  engine::Field4* found = FindField4(data, field);
  return found ? Finish(engine::f4memoAssignN(*found, bytes)) : engine::kErrorFieldName;
}

int clsKVRData::SetFieldTextByPointer(DataHandle data, FieldHandle field, std::string_view text) {
  engine::Field4* found = FindField4(data, field);
  if (!found) return engine::kErrorFieldName;
  switch (engine::f4type(*found)) {
    case 'D': {
      std::optional<Date> date = ReadDate(text);
      return date ? SetDateByPointer(data, field, *date) : SetDateFieldValueByPointer(data, field, text);
    }
    case 'L': {
      char answer = ReadSwitch(text);
      if (answer != 0) return SetBooleanFieldValueByPointer(data, field, answer == 'T');
      return Refuse(*found, engine::f4name(*found) + " takes T or F, not " + Quoted(text) + ".");
    }
    case 'M':
      return SetMemoFieldValueByPointer(data, field, text);
    case 'C':
      return SetStringFieldValueByPointer(data, field, text);
    default: {
      if (Trim(text).empty()) return AssignText(*found, "");
      std::optional<Currency> number = Currency::Parse(Trim(text));
      if (number) return SetCurrencyFieldValueByPointer(data, field, *number);
      if (IsPlainNumber(Trim(text))) return Assigned(*found, engine::f4assignNVB(*found, Trim(text)), text);
      return Refuse(*found, engine::f4name(*found) + ": " + Quoted(text) +
                                " is no number. Please enter digits, with a point before decimals.");
    }
  }
}

// --- Setters by name ---

int clsKVRData::SetStringFieldValue(DataHandle data, std::string_view field, std::string_view value) {
  return SetStringFieldValueByPointer(data, FindField(data, field), value);
}

int clsKVRData::SetDateFieldValue(DataHandle data, std::string_view field, std::string_view display_date) {
  return SetDateFieldValueByPointer(data, FindField(data, field), display_date);
}

int clsKVRData::SetBooleanFieldValue(DataHandle data, std::string_view field, bool value) {
  return SetBooleanFieldValueByPointer(data, FindField(data, field), value);
}

int clsKVRData::SetNumberFieldValue(DataHandle data, std::string_view field, std::int32_t value) {
  return SetNumberFieldValueByPointer(data, FindField(data, field), value);
}

int clsKVRData::SetDoubleFieldValue(DataHandle data, std::string_view field, double value) {
  return SetDoubleFieldValueByPointer(data, FindField(data, field), value);
}

int clsKVRData::SetCurrencyFieldValue(DataHandle data, std::string_view field, Currency value) {
  return SetCurrencyFieldValueByPointer(data, FindField(data, field), value);
}

int clsKVRData::SetMemoFieldValue(DataHandle data, std::string_view field, std::string_view value) {
  return SetMemoFieldValueByPointer(data, FindField(data, field), value);
}

int clsKVRData::SetMemoFieldValueBinary(DataHandle data, std::string_view field, std::string_view bytes) {
  return SetMemoFieldValueBinaryByPointer(data, FindField(data, field), bytes);
}

}  // namespace tallwick
