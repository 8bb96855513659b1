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

std::int32_t AnyNumberIn(std::string_view field) {
  const std::string_view text = Trim(field);
  std::int32_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

Currency MoneyIn(std::string_view field) {
  // The usual form: blanks, digits, a point, two digits. The dollars are read without a branch for each
  // place.
  const std::size_t point = field.size() < 4 || field.size() > 16 ? 0 : field.size() - 3;
  if (point > 0 && field[point] == '.' && Digit(field[point + 1]) && Digit(field[point + 2])) {
    std::int64_t dollars = 0;
    unsigned seen = 0;  // a digit was
    unsigned wrong = 0;
    for (std::size_t at = 0; at < point; ++at) {
      const unsigned blank = field[at] == ' ' ? 1 : 0;
      const unsigned digit = (static_cast<unsigned>(field[at]) - '0') * (1 - blank);
      wrong |= (digit > 9 ? 1U : 0U) | (blank & seen);
      seen |= 1 - blank;
      dollars = dollars * 10 + digit;
    }
    if (seen != 0 && wrong == 0)
      return Currency::FromCents(dollars * 100 + (field[point + 1] - '0') * 10 + (field[point + 2] - '0'));
  }
  return Currency::Parse(Trim(field)).value_or(Currency());
}

char AnyStatusIn(std::string_view field) {
  const std::string_view text = Trim(field);
  return text.empty() ? ' ' : text.size() == 1 ? text[0] : '?';
}

}  // namespace tallwick
