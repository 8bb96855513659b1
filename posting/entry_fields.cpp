#include "posting/entry_fields.h"

namespace tallwick {
namespace {

Period PeriodOf(std::string_view text, std::int32_t bank_day, bool* valid) {
  RunState scratch;
  const Period period = ParsePeriod(text, bank_day, scratch);
  *valid = scratch.period_valid;
  return period;
}

}  // namespace

std::string EntryProblem(ControlKind kind, std::string_view label, std::string_view text, int width) {
  if (width == 0) return {};
  switch (kind) {
    case ControlKind::kAmount:
      return AmountProblem(label, text, width);
    case ControlKind::kDate:
      return DateProblem(label, text);
    default:
      return TextProblem(label, text, width);
  }
}

void ReadEntry(std::string_view text, std::int32_t, std::string* value) {
  *value = Trim(text);
}

void ReadEntry(std::string_view text, std::int32_t, Currency* value) {
  *value = Currency::ParseTyped(text).value_or(Currency());
}

void ReadEntry(std::string_view text, std::int32_t, Date* value) {
  *value = ParseDisplayDate(text).value_or(Date{});
}

void ReadEntry(std::string_view text, std::int32_t bank_day, Period* value) {
  bool valid = false;
  *value = PeriodOf(text, bank_day, &valid);
}

std::string ShownValue(const std::string& value) {
  return value;
}

std::string ShownValue(Currency value) {
  return AmountText(value);
}

std::string ShownValue(const Date& value) {
  return DisplayDate(value);
}

std::string ShownValue(const Period& value) {
  return ShownPeriod(value);
}

std::string FormattedEntry(ControlKind kind, std::string_view text, std::int32_t bank_day) {
  std::string trimmed(Trim(text));
  if (trimmed.empty()) return {};
  if (kind == ControlKind::kAmount) {
    const std::optional<Currency> amount = Currency::ParseTyped(trimmed);
    return amount ? AmountText(*amount) : trimmed;
  }
  if (kind == ControlKind::kDate) {
    const std::optional<Date> date = ParseDisplayDate(trimmed);
    return date ? DisplayDate(*date) : trimmed;
  }
  if (kind == ControlKind::kPeriod) {
    bool valid = false;
    const Period period = PeriodOf(trimmed, bank_day, &valid);
    return valid ? ShortForm(period) : trimmed;
  }
  return trimmed;
}

}  // namespace tallwick
