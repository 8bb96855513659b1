#include "posting/check_validation.h"

#include "core/text.h"
#include "posting/file_number.h"

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
  if (IsVoidFile(FileNumber(check)) || check.on_file()) return {};
  return FileNumber(check) + " is not on file...";
}

std::string PeriodIsGiven(const CheckCase& check) {
  return Trim(check.text("txtCheckAcctPeriod")).empty() ? "Accounting Month is Missing." : "";
}

// A text that is no period of the bank's form is refused as such later on.
std::string PeriodIsOpen(const CheckCase& check) {
  const bool closed = MakeKey(check.period) <= MakeKey(check.bank.reconciled);
  if (!check.period_valid || !check.period_enabled || !closed) return {};
  return "May NOT post checks to Accounting Period " + std::string(Trim(check.text("txtCheckAcctPeriod"))) +
         " - It has been reconciled.";
}

constexpr CheckTest kTests[] = {
    {FileIsGiven, "txtCheckFileNumber"},        {FileIsNotVoid, "txtCheckFileNumber"},
    {FileIsKnown, "txtCheckFileNumber", false}, {PeriodIsGiven, "txtCheckAcctPeriod"},
    {PeriodIsOpen, "txtCheckAcctPeriod"},
};

}  // namespace

std::span<const CheckTest> CheckTests() {
  return kTests;
}

EntryRefusal FirstEntryRefusal(const EntryText& text) {
  if (Trim(text("txtCheckNumber")).empty()) return {"txtCheckNumber", "Check Number is Required..."};
  return FirstEntryProblem(CheckEntryFields(), kCheckLayout, text);
}

}  // namespace tallwick
