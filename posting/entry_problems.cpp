#include "posting/entry_problems.h"

#include <algorithm>

#include "core/encoding.h"
#include "core/period.h"
#include "core/text.h"
#include "core/text_format.h"

namespace tallwick {
namespace {

std::string Problem(std::string_view label, std::string_view what) {
  return std::string(label) + " " + std::string(what);
}

std::size_t FindControlCharacter(std::string_view text) {
  const auto* found =
      std::find_if(text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; });
  return found == text.end() ? std::string_view::npos : static_cast<std::size_t>(found - text.begin());
}

}  // namespace

std::string TextProblem(std::string_view label, std::string_view text, int width) {
  if (const std::size_t at = FindControlCharacter(text); at != std::string_view::npos) {
    // It shows as a blank, or not at all.
    const std::string_view before = Trim(text.substr(0, at));
    return Problem(label, "has a line break or a tab in it" +
                              (before.empty() ? "" : " behind " + Quoted(before)) +
                              ".  Type it on one line.");
  }
  const std::optional<std::string> stored = ToWindows1252(text);
  if (!stored) {
    const std::string foreign = FirstCharacterOutside1252(text);
    return Problem(label, "can not be stored with the character " + Quoted(foreign) + ".  Type it without.");
  }
  const std::size_t length = Trim(*stored).size();
  if (length > static_cast<std::size_t>(width)) {
    return Problem(label, "is too long: " + std::to_string(length) + " characters, and " +
                              std::to_string(width) + " fit.  Shorten it.");
  }
  return {};
}

std::string AmountProblem(std::string_view label, std::string_view text, int width) {
  if (Trim(text).empty()) return {};
  const std::optional<Currency> amount = Currency::ParseTyped(text);
  if (!amount) return Problem(label, Quoted(Trim(text)) + " is not an amount.  Type it like 1,250.00.");
  if (amount->IsNegative())
    return Problem(label,
                   Quoted(Trim(text)) +
                       " is negative.  Amounts have no minus: post what goes out as a check or a wire, "
                       "what comes in as a deposit.");
  if (*amount > GreatestAmount(width)) {
    return Problem(label, Quoted(Trim(text)) + " is too large.  The greatest amount is " +
                              AmountText(GreatestAmount(width)) + ".");
  }
  return {};
}

std::string DateProblem(std::string_view label, std::string_view text) {
  if (ParseDisplayDate(text)) return {};
  return Problem(label, Quoted(Trim(text)) + " is not a date.  Type it like 03/15/2024.");
}

std::string YearProblem(std::string_view label, std::string_view typed, const Date& date) {
  if (date.IsEmpty() || (date.year >= kFirstPeriodYear && date.year <= kLastPeriodYear)) return {};
  return Problem(label, Quoted(Trim(typed)) + " is not in the years " + std::to_string(kFirstPeriodYear) +
                            " to " + std::to_string(kLastPeriodYear) + ".  Type it like 03/15/2024.");
}

Currency GreatestAmount(int width) {
  std::int64_t cents = 1;
  for (int digit = 1; digit < width; ++digit) cents *= 10;
  return Currency::FromCents(cents - 1);
}

std::string AmountText(Currency amount) {
  return FormatNumber(amount, "#,###,###,##0.00");
}

int WidthOf(const TableLayout& layout, std::string_view field) {
  for (const FieldLayout& one : layout.fields) {
    if (EqualsIgnoreCase(one.name, field)) return one.width;
  }
  return 0;
}

}  // namespace tallwick
