// What can be wrong with a text as it was typed, in words for the person who typed it. "" means nothing is.
// `label` names the field as the screen does ("Payee"); `width` is what the table's field holds.
#pragma once

#include <string>
#include <string_view>

#include "core/currency.h"
#include "core/date.h"
#include "tables/layout.h"

namespace tallwick {

// Too long, a line break or another control character, or a character outside Windows-1252.
std::string TextProblem(std::string_view label, std::string_view text, int width);

// No amount, negative, or more than a numeric field of `width` with two decimals holds. Blank is fine.
std::string AmountProblem(std::string_view label, std::string_view text, int width);

// No date. Blank is fine.
std::string DateProblem(std::string_view label, std::string_view text);

// A date, as it was typed, of a year that no period has; "" for any other and for the empty date.
std::string YearProblem(std::string_view label, std::string_view typed, const Date& date);

// The greatest amount of a numeric field with two decimals: 999,999,999.99 for 12.
Currency GreatestAmount(int width);

// "1,250.00", the form in which screens show amounts.
std::string AmountText(Currency amount);

// The width of a field in its table; 0 for an unknown name.
int WidthOf(const TableLayout& layout, std::string_view field);

}  // namespace tallwick
