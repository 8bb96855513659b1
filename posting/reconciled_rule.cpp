#include "posting/reconciled_rule.h"

namespace tallwick {
namespace {

constexpr std::string_view kRestricted = "\r\nChanges are restricted.";

// "" while the period is open. `kind`: "Accounting" or "Statement".
std::string PeriodRestriction(std::string_view kind, const Period& period, const BankRecord& bank) {
  if (!IsReconciled(period, bank)) return {};
  return std::string(kind) + " period " + ShortForm(period) + " has been reconciled." +
         std::string(kRestricted);
}

std::string_view StatementWord(const CheckRecord& check) {
  if (check.status == "C") return "Cleared";
  if (check.status == "V") return "Voided";
  return check.status == "S" ? "Stop Payment" : "";
}

}  // namespace

bool IsReconciled(const Period& period, const BankRecord& bank) {
  return !bank.reconciled.IsEmpty() && MakeKey(period) <= MakeKey(bank.reconciled);
}

std::string StatusRestriction(const CheckRecord& check, const BankRecord& bank) {
  const std::string word(StatementWord(check));
  if (word.empty() || check.statement.IsEmpty() || !IsReconciled(check.statement, bank)) return {};
  return word + " and reconciled." + std::string(kRestricted);
}

std::string RestrictionOf(const CheckRecord& check, const BankRecord& bank) {
  const std::string status = StatusRestriction(check, bank);
  return status.empty() ? PeriodRestriction("Accounting", check.accounting, bank) : status;
}

std::string RestrictionOf(const WireRecord& wire, const BankRecord& bank) {
  return StatementIsReconciled(wire, bank) ? PeriodRestriction("Statement", wire.statement, bank)
                                           : PeriodRestriction("Accounting", wire.accounting, bank);
}

bool StatementIsReconciled(const WireRecord& wire, const BankRecord& bank) {
  return !wire.statement.IsEmpty() && IsReconciled(wire.statement, bank);
}

std::string RestrictionOf(const VoucherRecord& voucher, const BankRecord& bank) {
  return PeriodRestriction("Accounting", voucher.accounting, bank);
}

std::string RestrictionOf(const DepositRecord& deposit, const BankRecord& bank) {
  return PeriodRestriction("Accounting", deposit.accounting, bank);
}

}  // namespace tallwick
