// The tests that a wire passes before it is written, in the order in which they run. Reading the list in
// wire_validation.cpp is reading the rule.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "posting/entry_fields.h"
#include "tables/bank_table.h"
#include "tables/wire_table.h"

namespace tallwick {

struct TypedPeriod {
  Period period;       // as parsed
  bool valid = false;  // it is one of the bank's form
};

// What the tests look at.
struct WireCase {
  EntryText text;
  const BankRecord& bank;
  TypedPeriod accounting;
  TypedPeriod statement;
  bool period_enabled = true;     // the accounting period can be changed
  std::function<bool()> on_file;  // whether the office knows the file number
};

std::span<const EntryTest<WireCase>> WireTests();

// Why a posted wire cannot be marked cleared, "" when it can: that would move a cleared one to another
// statement, which only a person who looks at it may do.
std::string ClearingRefusal(const WireRecord& wire);

}  // namespace tallwick
