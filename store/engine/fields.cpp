// Field access: bytes of the record to values and back, by digits and never through a double where money is
// concerned.
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

#include "core/text.h"
#include "core/text_format.h"
#include "store/engine/byte_order.h"
#include "store/engine/instance.h"
#include "store/engine/memo_reference.h"

namespace tallwick::engine {
namespace {

std::string_view Bytes(const Field4& field) {
  return {f4ptr(field), static_cast<std::size_t>(field.info.width)};
}

bool IsNumeric(const Field4& field) {
  return field.info.type == 'N' || field.info.type == 'F';
}

double BinaryDouble(const Field4& field) {
  double value = 0;
  std::memcpy(&value, f4ptr(field), sizeof value);
  return value;
}

int Refuse(Field4& field) {
  return field.data->code.Fail(kErrorFieldValue);
}

// Puts a text into the field, on the left or on the right; refuses one that is too long.
int Put(Field4& field, std::string_view text, bool right) {
  const auto width = static_cast<std::size_t>(field.info.width);
  if (text.size() > width) return Refuse(field);
  std::uint8_t* place = field.data->Own() + field.info.offset;
  std::memset(place, ' ', width);
  std::memcpy(place + (right ? width - text.size() : 0), text.data(), text.size());
  field.data->changed = true;
  return kSuccess;
}

int PutBinary(Field4& field, double value) {
  if (!std::isfinite(value)) return Refuse(field);
  std::memcpy(field.data->Own() + field.info.offset, &value, sizeof value);
  field.data->changed = true;
  return kSuccess;
}

// A numeric text as the table stores it: digits with the field's decimals. "" when it is no number or needs
// rounding.
std::string NumericText(const Field4& field, std::string_view text) {
  std::string_view rest = Trim(text);
  std::string out;
  if (!rest.empty() && (rest.front() == '-' || rest.front() == '+')) {
    if (rest.front() == '-') out = "-";
    rest.remove_prefix(1);
  }
  const std::size_t dot = rest.find('.');
  const std::string_view whole = rest.substr(0, dot);
  std::string_view fraction = dot == std::string_view::npos ? std::string_view() : rest.substr(dot + 1);
  if ((!whole.empty() && !IsAllDigits(whole)) || (!fraction.empty() && !IsAllDigits(fraction))) return {};
  if (whole.empty() && fraction.empty()) return {};
  const auto decimals = static_cast<std::size_t>(field.info.decimals);
  while (fraction.size() > decimals && fraction.back() == '0') fraction.remove_suffix(1);
  if (fraction.size() > decimals) return {};
  const std::size_t zeros = std::min(whole.find_first_not_of('0'), whole.size());
  // A zero has no sign.
  if (zeros == whole.size() && fraction.find_first_not_of('0') == std::string_view::npos) out.clear();
  out += zeros == whole.size() ? "0" : std::string(whole.substr(zeros));
  if (decimals > 0) out += "." + std::string(fraction) + std::string(decimals - fraction.size(), '0');
  return out;
}

std::uint32_t MemoBlock(const Field4& field) {
  return MemoBlockAt(field.info, reinterpret_cast<const std::uint8_t*>(f4ptr(field)));
}

int AssignMemo(Field4& field, std::string_view text, MemoFile::Kind kind) {
  if (field.info.type != 'M' || field.data->table.Memo() == nullptr) return Refuse(field);
  field.data->Own();
  field.data->memos[field.number] = {kind, std::string(text)};
  field.data->changed = true;
  return kSuccess;
}

}  // namespace

int d4numFields(const Data4& data) {
  return static_cast<int>(data.fields.size());
}

Field4* d4field(Data4& data, std::string_view name) {
  for (Field4& field : data.fields) {
    if (EqualsIgnoreCase(field.info.name, Trim(name))) return &field;
  }
  data.code.Fail(kErrorFieldName);
  return nullptr;
}

Field4* d4fieldJ(Data4& data, int position) {
  if (position >= 1 && position <= d4numFields(data))
    return &data.fields[static_cast<std::size_t>(position) - 1];
  data.code.Fail(kErrorFieldName);
  return nullptr;
}

std::string f4name(const Field4& field) {
  return field.info.name;
}
char f4type(const Field4& field) {
  return field.info.type;
}
int f4len(const Field4& field) {
  return field.info.width;
}
int f4decimals(const Field4& field) {
  return field.info.decimals;
}
Data4& f4data(const Field4& field) {
  return *field.data;
}
int f4number(const Field4& field) {
  return field.number;
}

const char* f4ptr(const Field4& field) {
  return reinterpret_cast<const char*>(field.data->view) + field.info.offset;
}

double f4double(const Field4& field) {
  if (field.info.type == 'B') return BinaryDouble(field);
  if (field.info.type == 'I')
    return static_cast<std::int32_t>(Load32(reinterpret_cast<const std::uint8_t*>(f4ptr(field))));
  const std::string_view text = Trim(Bytes(field));
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return std::isfinite(value) ? value : 0;
}

long f4long(const Field4& field) {
  if (field.info.type == 'B' || field.info.type == 'I') {
    const double value = f4double(field);
    return std::isfinite(value) && std::abs(value) < 9e18 ? static_cast<long>(value) : 0;
  }
  const std::string_view text = Trim(Bytes(field));
  long value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

Currency f4currency(const Field4& field) {
  if (field.info.type == 'B') {
    const double scaled = std::round(BinaryDouble(field) * 10000.0);
    if (!(std::abs(scaled) < 9.2e18)) return Currency::Overflow();
    return Currency::FromTenThousandths(static_cast<std::int64_t>(scaled));
  }
  // Zero bytes come from a damaged disk; only blanks are an empty amount.
  if (Bytes(field).find('\0') != std::string_view::npos) return Currency::Overflow();
  const std::string_view text = Trim(Bytes(field));
  return text.empty() ? Currency() : Currency::Parse(text).value_or(Currency::Overflow());
}

int f4assignNVB(Field4& field, std::string_view text) {
  switch (field.info.type) {
    case 'N':
    case 'F': {
      if (Trim(text).empty()) return Put(field, "", true);
      const std::string stored = NumericText(field, text);
      return stored.empty() ? Refuse(field) : Put(field, stored, true);
    }
    case 'D':
      if (Trim(text).empty()) return Put(field, "", false);
      return text.size() == 8 && ParseStoredDate(text) ? Put(field, text, false) : Refuse(field);
    case 'L':
      if (Trim(text).empty()) return Put(field, "", false);
      return text.size() == 1 && std::strchr("TtYyFfNn?", text[0]) != nullptr ? Put(field, text, false)
                                                                              : Refuse(field);
    case 'C': {
      std::string_view fitting = text;
      while (fitting.size() > static_cast<std::size_t>(field.info.width) && fitting.back() == ' ')
        fitting.remove_suffix(1);
      return Put(field, fitting, false);
    }
    case 'M':
      return f4memoAssign(field, text);
    default:
      return Refuse(field);
  }
}

int f4assignLong(Field4& field, long value) {
  if (field.info.type == 'B') return PutBinary(field, static_cast<double>(value));
  if (!IsNumeric(field) && field.info.type != 'C') return Refuse(field);
  std::array<char, 24> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  const std::string_view text(digits.data(), static_cast<std::size_t>(end - digits.data()));
  return field.info.decimals > 0 ? f4assignNVB(field, text) : Put(field, text, true);
}

int f4assignDouble(Field4& field, double value) {
  if (field.info.type == 'B') return PutBinary(field, value);
  if (!IsNumeric(field) || !std::isfinite(value)) return Refuse(field);
  std::array<char, 400> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed,
                                 field.info.decimals);
  if (end.ec != std::errc()) return Refuse(field);
  return f4assignNVB(field, std::string_view(text.data(), static_cast<std::size_t>(end.ptr - text.data())));
}

int f4assignCurrency(Field4& field, Currency value) {
  if (!value.IsValid()) return Refuse(field);
  if (field.info.type == 'B') return PutBinary(field, static_cast<double>(value.TenThousandths()) / 10000.0);
  return IsNumeric(field) ? f4assignNVB(field, value.ToText(0)) : Refuse(field);
}

std::string f4memoPtr(Field4& field) {
  const auto assigned = field.data->memos.find(field.number);
  if (assigned != field.data->memos.end()) return assigned->second.second;
  std::string text;
  if (field.info.type != 'M' || field.data->eof) return text;
  const std::uint32_t block = MemoBlock(field);
  if (block == 0) return text;
  if (field.data->table.ReadMemo(block, &text) != kSuccess) {
    field.data->code.Fail(kErrorMemo);
  }
  return text;
}

std::size_t f4memoLen(Field4& field) {
  return f4memoPtr(field).size();
}
int f4memoAssign(Field4& field, std::string_view text) {
  return AssignMemo(field, text, MemoFile::Kind::kText);
}
int f4memoAssignN(Field4& field, std::string_view bytes) {
  return AssignMemo(field, bytes, MemoFile::Kind::kBinary);
}

std::string date4format(std::string_view stored, std::string_view pattern) {
  const auto date = ParseStoredDate(stored);
  return date ? FormatDate(*date, pattern) : std::string();
}

}  // namespace tallwick::engine
