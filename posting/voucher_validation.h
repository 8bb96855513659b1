// The tests that a voucher passes before it is written, in the order in which they run. Reading the list in
// voucher_validation.cpp is reading the rule.
#pragma once

#include <functional>
#include <span>

#include "posting/entry_fields.h"
#include "tables/bank_table.h"

namespace tallwick {

// What the tests look at.
struct VoucherCase {
  EntryText text;
  const BankRecord& bank;
  Period period;                  // as parsed
  bool period_valid = false;      // it is one of the bank's form
  bool period_enabled = true;     // the period can be changed
  std::function<bool()> on_file;  // whether the office knows the file number
};

std::span<const EntryTest<VoucherCase>> VoucherTests();

}  // namespace tallwick
