// Small facts about deposits: names, dates as they are typed, the next sequence, what a deposit adds up to.
#pragma once

#include <bitset>
#include <optional>
#include <string>
#include <string_view>

#include "core/date.h"
#include "tables/deposit_table.h"

namespace tallwick {

inline constexpr int kLastSequence = 99;  // two characters

// "03-15-2024", from a stored date "CCYYMMDD".
std::string DepositDateText(std::string_view dated);
// "03-15-2024 / 1": how messages and the audit trail name a deposit.
std::string DepositName(std::string_view dated, std::string_view sequence);

// True for a date entry without a date: blank, or a mask with nothing typed into it.
bool IsEmptyDate(std::string_view text);
// A date typed freely: everything that the masked entry takes, and "March 15, 2024", "15 mar 24", "Mar 15",
// "3/15", "2024-03-15"; without a year it is one of `today`'s year. A year has two digits or four. Nullopt
// for what is no existing day.
std::optional<Date> ParseFreeDate(std::string_view text, const Date& today);

// A sequence as it is stored, without a leading zero: "1" for "01".
std::string StoredSequence(std::string_view typed);

// The sequence numbers of a date.
struct SequencesUsed {
  std::bitset<kLastSequence + 1> used;
  int highest = 0;  // 0 on a date without deposits
  // The number after the highest; where the numbers end there, the lowest that is free. Above kLastSequence
  // when none is.
  int Next() const;
};
SequencesUsed SequencesOf(DepositTable& deposits, std::string_view dated);
// "All 99 sequence numbers of 03-15-2024 are used.  Type another date."
std::string AllSequencesUsed(std::string_view dated);

// A line break and "Last Deposit was Posted Mar 15, 2024 / 2"; "" for an empty table.
std::string LastDepositReminder(DepositTable& deposits);

Currency DepositTotal(const DepositRecord& deposit);

// "Outstanding", "Cleared" when every item has cleared, else "Partly Cleared"; with the style of its row.
struct DepositState {
  std::string text;
  std::string style;
};
DepositState StateOf(const DepositRecord& deposit);

// Whether both have lines at the same places, with the same standing at the bank. The lines of one may then
// be saved over those of the other; else a line would take over what belongs to another.
bool HaveSameLines(const DepositRecord& one, const DepositRecord& other);

// The first item, from 1, that has cleared; 0 = none.
int FirstCleared(const DepositRecord& deposit);

}  // namespace tallwick
