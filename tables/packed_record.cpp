#include "tables/packed_record.h"

#include <charconv>

#include "core/text.h"

namespace tallwick {
namespace {

constexpr bool Digit(char character) {
  return character >= '0' && character <= '9';
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

std::int32_t NumberIn(std::string_view field) {
  std::int32_t number = 0;
  std::size_t at = 0;
  while (at < field.size() && field[at] == ' ') ++at;
  for (; at < field.size() && Digit(field[at]) && number < 100'000'000; ++at)
    number = number * 10 + (field[at] - '0');
  if (at == field.size()) return number;
  const std::string_view text = Trim(field);
  number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

Currency MoneyIn(std::string_view field) {
  // The usual form: blanks, digits, a point, two digits.
  std::size_t at = 0;
  while (at < field.size() && field[at] == ' ') ++at;
  const std::size_t first = at;
  std::int64_t cents = 0;
  for (; at < field.size() && Digit(field[at]); ++at) cents = cents * 10 + (field[at] - '0');
  const bool usual = at + 3 == field.size() && at - first <= 15 && field[at] == '.' && Digit(field[at + 1]) &&
                     Digit(field[at + 2]);
  if (usual) return Currency::FromCents(cents * 100 + (field[at + 1] - '0') * 10 + (field[at + 2] - '0'));
  return Currency::Parse(Trim(field)).value_or(Currency());
}

char StatusIn(std::string_view field) {
  if (field.size() == 2 && field[1] == ' ') return field[0];
  const std::string_view text = Trim(field);
  return text.empty() ? ' ' : text.size() == 1 ? text[0] : '?';
}

bool IsBlank(std::string_view field) {
  return field.find_first_not_of(' ') == std::string_view::npos;
}

}  // namespace tallwick
