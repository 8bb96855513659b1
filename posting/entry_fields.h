// The entries of a posting screen between screen and record: which control holds which member, and the way
// both ways. A screen lists its entries once, as data, in the order in which they are typed.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "core/currency.h"
#include "core/date.h"
#include "core/form.h"
#include "core/period.h"
#include "core/text.h"
#include "posting/entry_problems.h"
#include "tables/layout.h"

namespace tallwick {

// Gives the text of a control by its name.
using EntryText = std::function<std::string(std::string_view control)>;

template <class Record>
struct EntryField {
  using Member = std::variant<std::monostate, std::string Record::*, Currency Record::*, Date Record::*,
                              Period Record::*>;
  std::string_view control;
  ControlKind kind;
  std::string_view caption;  // with its mnemonic
  std::string_view label;    // as messages name it
  std::string_view field;    // of the table; "" for what is not stored, or in several fields
  Member member = {};        // where the value lives in the record; none for what is not stored
};

// What is wrong with an entry as it was typed; "" when nothing is. Width 0 means it is not stored in one
// field: periods are tested elsewhere.
std::string EntryProblem(ControlKind kind, std::string_view label, std::string_view text, int width);

// The value that a text stands for. The text has passed its tests.
void ReadEntry(std::string_view text, std::int32_t bank_day, std::string* value);
void ReadEntry(std::string_view text, std::int32_t bank_day, Currency* value);
void ReadEntry(std::string_view text, std::int32_t bank_day, Date* value);
void ReadEntry(std::string_view text, std::int32_t bank_day, Period* value);

// The text that an entry shows for a value.
std::string ShownValue(const std::string& value);
std::string ShownValue(Currency value);
std::string ShownValue(const Date& value);
std::string ShownValue(const Period& value);  // "" for no period

// The text in the form in which it is shown after leaving: amounts, dates and periods that can be read are
// put in their one form, others are left as typed; blanks around a text go.
std::string FormattedEntry(ControlKind kind, std::string_view text, std::int32_t bank_day);

// One test of a screen before anything is written. A screen lists its tests in the order in which they run.
template <class Case>
struct EntryTest {
  // The message of a failed test; "" when it is passed.
  std::string (*message)(const Case&);
  std::string_view control;  // where the cursor goes
  bool refuses = true;       // false: says it, and goes on
};

// The first entry that cannot be stored as it was typed: its control and the message, both "" when all can.
struct EntryRefusal {
  std::string_view control;
  std::string message;
};
template <class Record>
EntryRefusal FirstEntryProblem(std::span<const EntryField<Record>> entries, const TableLayout& layout,
                               const EntryText& text) {
  for (const EntryField<Record>& entry : entries) {
    std::string problem =
        EntryProblem(entry.kind, entry.label, text(entry.control), WidthOf(layout, entry.field));
    if (!problem.empty()) return {entry.control, std::move(problem)};
  }
  return {};
}

// The control that holds a table's field; "" when none does.
template <class Record>
std::string_view ControlOfField(std::span<const EntryField<Record>> entries, std::string_view field) {
  for (const EntryField<Record>& entry : entries) {
    if (!field.empty() && EqualsIgnoreCase(entry.field, field)) return entry.control;
  }
  return {};
}

// Writes the entries over `record`; what the screen does not hold stays.
template <class Record>
void ApplyEntries(std::span<const EntryField<Record>> entries, const EntryText& text, std::int32_t bank_day,
                  Record* record) {
  for (const EntryField<Record>& entry : entries) {
    std::visit(
        [&](auto member) {
          if constexpr (!std::is_same_v<decltype(member), std::monostate>) {
            ReadEntry(text(entry.control), bank_day, &(record->*member));
          }
        },
        entry.member);
  }
}

// The text that an entry shows for the record; "" for what is not stored.
template <class Record>
std::string ShownEntry(const EntryField<Record>& entry, const Record& record) {
  return std::visit(
      [&](auto member) -> std::string {
        if constexpr (std::is_same_v<decltype(member), std::monostate>) {
          return {};
        } else {
          return ShownValue(record.*member);
        }
      },
      entry.member);
}

}  // namespace tallwick
