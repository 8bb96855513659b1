// What the check screen hands to others: the printer of checks and the positive-pay export. Either may be
// missing; the screen then does without it.
#pragma once

#include <string>

#include "tables/bank_table.h"
#include "tables/check_table.h"

namespace tallwick {

// A check ready for its stock.
struct CheckOnPaper {
  CheckRecord check;
  std::string words;    // "**One Thousand dollars & no cents**"
  std::string figures;  // "$1,000.00"
  std::string remittance_advice;
};

CheckOnPaper MakeCheckOnPaper(const CheckRecord& check, std::string_view remittance_advice);

class CheckPrinter {
 public:
  virtual ~CheckPrinter() = default;
  // Why no check can be printed here ("MICR Fonts not installed - …"); "" when checks can.
  virtual std::string WhyNot() = 0;
  // True when the check went to paper. What failed has been shown.
  virtual bool Print(const CheckOnPaper& check, const BankRecord& bank, bool preview) = 0;
};

class PositivePayExport {
 public:
  virtual ~PositivePayExport() = default;
  // Called after the commit, for a bank that uses positive pay: the check was issued, or voided.
  virtual void Issued(const CheckRecord& check, const BankRecord& bank) = 0;
  virtual void Voided(const CheckRecord& check, const BankRecord& bank) = 0;
};

struct CheckPorts {
  CheckPrinter* printer = nullptr;
  PositivePayExport* positive_pay = nullptr;
};

}  // namespace tallwick
