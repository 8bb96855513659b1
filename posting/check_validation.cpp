#include "posting/check_validation.h"

#include "core/text.h"
#include "posting/check_mode.h"
#include "posting/file_number.h"
#include "posting/item_number.h"
#include "posting/reconciled_rule.h"

namespace tallwick {
namespace {

std::string FileNumber(const CheckCase& check) {
  return std::string(Trim(check.text("txtCheckFileNumber")));
}

std::string FileIsGiven(const CheckCase& check) {
  return FileNumber(check).empty() ? "File Number is Required..." : "";
}

std::string FileIsNotVoid(const CheckCase& check) {
  if (!IsVoidFile(FileNumber(check)) || check.status == "V") return {};
  return "File Number can NOT be " + Quoted(FileNumber(check)) + " ...";
}

std::string FileIsKnown(const CheckCase& check) {
  const std::string file = FileNumber(check);
  if (IsVoidFile(file) || !CanBeFile(file) || check.on_file()) return {};
  return file + " is not on file...";
}

std::string PeriodIsGiven(const CheckCase& check) {
  return Trim(check.text("txtCheckAcctPeriod")).empty() ? "Accounting Month is Missing." : "";
}

// A text that is no period of the bank's form is refused as such later on.
std::string PeriodIsOpen(const CheckCase& check) {
  const bool closed = IsReconciled(check.period, check.bank);
  if (!check.period_valid || !check.period_enabled || !closed) return {};
  return "May NOT post checks to Accounting Period " + std::string(Trim(check.text("txtCheckAcctPeriod"))) +
         " - It has been reconciled.";
}

// The period of a voided or stopped check can still be moved, but not behind the statement that has the check.
std::string PeriodIsOfItsStatement(const CheckCase& check) {
  if (!check.period_valid || !check.period_enabled || check.statement.IsEmpty()) return {};
  return StatementRefusal(check.status, check.period, check.statement);
}

constexpr CheckTest kTests[] = {
    {FileIsGiven, "txtCheckFileNumber"},        {FileIsNotVoid, "txtCheckFileNumber"},
    {FileIsKnown, "txtCheckFileNumber", false}, {PeriodIsGiven, "txtCheckAcctPeriod"},
    {PeriodIsOpen, "txtCheckAcctPeriod"},       {PeriodIsOfItsStatement, "txtCheckAcctPeriod"},
};

}  // namespace

std::span<const CheckTest> CheckTests() {
  return kTests;
}

EntryRefusal FirstEntryRefusal(const EntryText& text, bool new_number) {
  const std::string number = text("txtCheckNumber");
  if (Trim(number).empty()) return {"txtCheckNumber", "Check Number is Required..."};
  const std::string problem = new_number ? NumberProblem("Check Number", number) : "";
  if (!problem.empty()) return {"txtCheckNumber", problem};
  return FirstEntryProblem(CheckEntryFields(), kCheckLayout, text);
}

}  // namespace tallwick
