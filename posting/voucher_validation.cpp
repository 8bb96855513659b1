#include "posting/voucher_validation.h"

#include "posting/file_number.h"
#include "posting/reconciled_rule.h"

namespace tallwick {
namespace {

std::string Typed(const VoucherCase& voucher, std::string_view control) {
  return std::string(Trim(voucher.text(control)));
}

std::string FileNumber(const VoucherCase& voucher) {
  return Typed(voucher, "txtVCHRFileNumber");
}

std::string FileIsGiven(const VoucherCase& voucher) {
  return FileNumber(voucher).empty() ? "File Number is Required." : "";
}

std::string FileIsNotVoid(const VoucherCase& voucher) {
  return IsVoidFile(FileNumber(voucher)) ? "File Number can NOT be " + Quoted(FileNumber(voucher)) + " ."
                                         : "";
}

std::string FileIsKnown(const VoucherCase& voucher) {
  return !CanBeFile(FileNumber(voucher)) || voucher.on_file() ? "" : FileNumber(voucher) + " is not on file.";
}

// A text that is no period of the bank's form is refused as such later on.
std::string PeriodIsOpen(const VoucherCase& voucher) {
  const bool closed = IsReconciled(voucher.period, voucher.bank);
  if (!voucher.period_valid || !voucher.period_enabled || !closed) return {};
  return "May NOT post Vouchers to Accounting Period " + Typed(voucher, "txtVCHRAcctPeriod") +
         " - It has been reconciled.";
}

std::string PeriodIsGiven(const VoucherCase& voucher) {
  return Typed(voucher, "txtVCHRAcctPeriod").empty() ? "Accounting Month is Missing." : "";
}

std::string NumberIsGiven(const VoucherCase& voucher) {
  return Typed(voucher, "txtVCHRNumber").empty() ? "Voucher Number is Required." : "";
}

constexpr EntryTest<VoucherCase> kTests[] = {
    {FileIsGiven, "txtVCHRFileNumber"},        {FileIsNotVoid, "txtVCHRFileNumber"},
    {FileIsKnown, "txtVCHRFileNumber", false}, {PeriodIsOpen, "txtVCHRAcctPeriod"},
    {PeriodIsGiven, "txtVCHRAcctPeriod"},      {NumberIsGiven, "txtVCHRNumber"},
};

}  // namespace

std::span<const EntryTest<VoucherCase>> VoucherTests() {
  return kTests;
}

}  // namespace tallwick
