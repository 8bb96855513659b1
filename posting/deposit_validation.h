// The tests that a deposit passes before it is written, in the order in which they run. Reading the list in
// deposit_validation.cpp is reading the rule.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/date.h"
#include "core/period.h"
#include "tables/bank_table.h"

namespace tallwick {

// One row of the entry, as it was typed.
struct DepositRow {
  int number = 0;  // 1 to 15
  std::string file_number;
  std::string source;
  std::string amount;
  bool wire_in = false;

  bool IsUsed() const { return !file_number.empty() || !source.empty() || !amount.empty(); }
  // True where something stands in the amount, be it an amount or not, but zero.
  bool HasAmount() const;
};

// What the tests look at.
struct DepositCase {
  std::string dated;  // as typed
  std::string sequence;
  std::optional<Date> date;  // as parsed; none for what is no date
  std::vector<DepositRow> rows;
  Period period;                // as parsed
  bool period_valid = false;    // it is one of the bank's form
  bool sequences_used = false;  // no sequence is free on `date`
  bool posted = false;          // the deposit exists already
  Period posted_period;         // of the deposit as it was loaded
  const BankRecord& bank;
  // Whether the office knows a file number; empty = not to be tested.
  std::function<bool(const std::string&)> on_file;
};

// What a test found: nothing where the message is empty.
struct DepositFinding {
  enum class Kind { kRefusal, kNote, kQuestion };
  std::string message;
  std::string_view control = {};  // where the cursor goes
  int index = 0;
  Kind kind = Kind::kRefusal;  // a question refuses where it is answered No
};

// What is asked before a posted deposit of a reconciled period is changed.
std::string ReconciledQuestion(const Period& period);

using DepositTest = DepositFinding (*)(const DepositCase&);
std::span<const DepositTest> DepositTests();

}  // namespace tallwick
