#include "reports/file_ledger.h"

#include <algorithm>

#include "reports/file_standings.h"
#include "tables/status_text.h"

namespace tallwick {

void BankLedger::AddCheck(const CheckRecord& check) {
  total_checks_ += check.amount;
  if (check.status == "S" || check.status == "V") {
    void_checks_ += check.amount;
    ++void_count_;
  }
  checks_.push_back(check);
}

void BankLedger::AddWire(const WireRecord& wire) {
  total_wires_ += wire.amount;
  wires_.push_back(wire);
}

Currency BankLedger::AddDepositItem(const DepositRecord& deposit, int item) {
  if (item < 1 || item > kDepositItems) return {};
  const DepositItem& found = deposit.items[static_cast<std::size_t>(item) - 1];
  total_deposits_ += found.amount;
  deposits_.push_back({deposit.dated, deposit.sequence, item, deposit.accounting, found.source, found.amount,
                       found.statement, found.status, IsWireIn(deposit, item)});
  return found.amount;
}

void BankLedger::AddVoucher(const VoucherRecord& voucher) {
  total_vouchers_ += voucher.amount;
  vouchers_.push_back(voucher);
}

bool BankLedger::HasTransactions() const {
  return !checks_.empty() || !wires_.empty() || !deposits_.empty() || !vouchers_.empty();
}

bool BankLedger::HasOutstanding() const {
  const auto is_outstanding = [](const auto& item) { return IsOutstanding(item.status); };
  return std::any_of(checks_.begin(), checks_.end(), is_outstanding) ||
         std::any_of(wires_.begin(), wires_.end(), is_outstanding) ||
         std::any_of(deposits_.begin(), deposits_.end(), is_outstanding) ||
         std::any_of(vouchers_.begin(), vouchers_.end(), is_outstanding);
}

void FileLedger::AddBank(BankLedger bank) {
  if (!bank.HasTransactions()) return;
  balance_ += bank.BankBalance();
  vouchered_ += bank.TotalVouchers();
  banks_.push_back(std::move(bank));
}

std::string_view FileLedger::Condition() const {
  return ConditionOfBalance(balance_);
}

std::string_view FileLedger::Status() const {
  const bool outstanding =
      std::any_of(banks_.begin(), banks_.end(), [](const BankLedger& bank) { return bank.HasOutstanding(); });
  return outstanding ? "Outstanding" : "Cleared";
}

std::string LedgerStatusText(std::string_view code) {
  return IsOutstanding(code) ? "Outstanding" : CheckStatusText(code);
}

}  // namespace tallwick
