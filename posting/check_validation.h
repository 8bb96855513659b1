// The tests that a check passes before it is written, in the order in which they run. Reading the list in
// check_validation.cpp is reading the rule; what a statement period must be is tested where a status is given
// (FrmEditChecksPost::MayUseStatement).
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "posting/check_entry.h"
#include "tables/bank_table.h"

namespace tallwick {

// What the tests look at.
struct CheckCase {
  EntryText text;
  std::string status;  // of the check: "V" for a voided one
  Period statement;    // in which a posted check got its status; empty where it has none
  const BankRecord& bank;
  Period period;                  // as parsed
  bool period_valid = false;      // it is one of the bank's form
  bool period_enabled = true;     // the period can be changed
  std::function<bool()> on_file;  // whether the office knows the file number
};

using CheckTest = EntryTest<CheckCase>;

std::span<const CheckTest> CheckTests();

// The first entry that cannot be stored as it was typed, the number that is missing included. `new_number`:
// no check has the number yet.
EntryRefusal FirstEntryRefusal(const EntryText& text, bool new_number);

}  // namespace tallwick
