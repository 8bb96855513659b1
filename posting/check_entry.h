// The entry of a check between screen and record: which control holds which field, and the way both ways.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "core/form.h"
#include "core/period.h"
#include "tables/check_table.h"

namespace tallwick {

struct CheckEntryField {
  std::string_view control;
  ControlKind kind;
  std::string_view caption;                  // with its mnemonic
  std::string_view label;                    // as messages name it
  std::string_view field;                    // of the table; "" for what is not stored, or in several fields
  std::string CheckRecord::*text = nullptr;  // where a plain text lives in the record
};

// Every entry in the order in which it is typed, the number first.
std::span<const CheckEntryField> CheckEntryFields();
// The control that holds a table's field; "" when none does.
std::string_view ControlOfCheckField(std::string_view field);
// Characters that fit an entry; 0 = no limit.
int WidthOfEntry(const CheckEntryField& entry);

// What is wrong with an entry as it was typed; "" when nothing is.
std::string CheckEntryProblem(const CheckEntryField& entry, std::string_view text);

// Gives the text of a control by its name.
using EntryText = std::function<std::string(std::string_view control)>;

// Writes the entries over `check`; what the screen does not hold (status, statement period, reason) stays.
// The texts have passed CheckEntryProblem, and the period is parsed already.
void ApplyCheckEntry(const EntryText& text, const Period& accounting, CheckRecord* check);

// The text that an entry shows for the record; "" for what is not stored.
std::string CheckEntryText(const CheckEntryField& entry, const CheckRecord& check);

// The text in the form in which it is shown after leaving: amounts, dates and periods that can be read are
// put in their one form, others are left as typed; blanks around a text go.
std::string FormattedEntry(ControlKind kind, std::string_view text, std::int32_t bank_day);

}  // namespace tallwick
