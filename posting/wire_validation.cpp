#include "posting/wire_validation.h"

#include "posting/file_number.h"
#include "posting/reconciled_rule.h"

namespace tallwick {
namespace {

std::string Typed(const WireCase& wire, std::string_view control) {
  return std::string(Trim(wire.text(control)));
}

std::string FileNumber(const WireCase& wire) {
  return Typed(wire, "txtWireFileNumber");
}

bool IsClosed(const WireCase& wire, const TypedPeriod& period) {
  return period.valid && IsReconciled(period.period, wire.bank);
}

std::string NumberIsGiven(const WireCase& wire) {
  return Typed(wire, "txtWireNumber").empty() ? "Wire Confirmation is Required..." : "";
}

std::string FileIsGiven(const WireCase& wire) {
  return FileNumber(wire).empty() ? "File Number is Required..." : "";
}

std::string FileIsNotVoid(const WireCase& wire) {
  return IsVoidFile(FileNumber(wire)) ? "File Number can NOT be " + Quoted(FileNumber(wire)) + " ..." : "";
}

std::string FileIsKnown(const WireCase& wire) {
  return !CanBeFile(FileNumber(wire)) || wire.on_file() ? "" : FileNumber(wire) + " is not on file...";
}

std::string PeriodIsOpen(const WireCase& wire) {
  if (!wire.period_enabled || !IsClosed(wire, wire.accounting)) return {};
  return "May NOT post Wires to Accounting Period " + Typed(wire, "txtWireAcctPeriod") +
         " - It has been reconciled...";
}

// The tests of the statement period and of the amount are for a wire that has an accounting period.
bool HasPeriod(const WireCase& wire) {
  return !Typed(wire, "txtWireAcctPeriod").empty();
}

std::string StatementIsOpen(const WireCase& wire) {
  if (!HasPeriod(wire) || !IsClosed(wire, wire.statement)) return {};
  return "May NOT clear Wires in the Statement Period " + Typed(wire, "txtWireStmtPeriod") +
         " - It has been reconciled...";
}

std::string StatementIsNotEarlier(const WireCase& wire) {
  const bool both = wire.accounting.valid && wire.statement.valid;
  if (!both || MakeKey(wire.statement.period) >= MakeKey(wire.accounting.period)) return {};
  return "Wire posted to Accounting Period " + Typed(wire, "txtWireAcctPeriod") +
         " can not be cleared in the Statement Period " + Typed(wire, "txtWireStmtPeriod");
}

// A text that is no amount is refused as such later on.
std::string AmountIsGiven(const WireCase& wire) {
  const std::string typed = Typed(wire, "txtWireAmount");
  const std::optional<Currency> amount = typed.empty() ? Currency() : Currency::ParseTyped(typed);
  return HasPeriod(wire) && amount && *amount <= Currency() ? "Amount missing..." : "";
}

std::string PeriodIsGiven(const WireCase& wire) {
  return HasPeriod(wire) ? "" : "Accounting Month is Missing...";
}

constexpr EntryTest<WireCase> kTests[] = {
    {NumberIsGiven, "txtWireNumber"},
    {FileIsGiven, "txtWireFileNumber"},
    {FileIsNotVoid, "txtWireFileNumber"},
    {FileIsKnown, "txtWireFileNumber", false},
    {PeriodIsOpen, "txtWireAcctPeriod"},
    {StatementIsOpen, "txtWireStmtPeriod"},
    {StatementIsNotEarlier, "txtWireStmtPeriod"},
    {AmountIsGiven, "txtWireAmount"},
    {PeriodIsGiven, "txtWireAcctPeriod"},
};

}  // namespace

std::span<const EntryTest<WireCase>> WireTests() {
  return kTests;
}

std::string ClearingRefusal(const WireRecord& wire) {
  return wire.status == "C" ? "Wire " + Quoted(wire.number) + " is cleared already" : "";
}

}  // namespace tallwick
