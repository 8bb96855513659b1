// The ledger of one escrow file: every check, wire, deposit item and voucher posted against it, bank by bank,
// and what they add up to.
//
// Pure arithmetic: records are streamed in, and figures and rows stand ready at any time. Sums keep four
// decimals; a stopped check counts as void exactly as a voided one does.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/currency.h"
#include "tables/check_table.h"
#include "tables/deposit_table.h"
#include "tables/voucher_table.h"
#include "tables/wire_table.h"

namespace tallwick {

// One item of a deposit as the ledger shows it.
struct LedgerDeposit {
  std::string dated;     // of the deposit, "CCYYMMDD"
  std::string sequence;  // of the deposit
  int item = 0;          // 1 to 15
  Period accounting;
  std::string source;
  Currency amount;
  Period statement;
  std::string status;
  bool wire_in = false;  // the item came by wire
};

class BankLedger {
 public:
  BankLedger(std::string_view bank_code, std::string_view bank_name) : code_(bank_code), name_(bank_name) {}

  void AddCheck(const CheckRecord& check);
  void AddWire(const WireRecord& wire);
  // The named item (1 to 15) of a deposit; an item outside is skipped. The amount that was added.
  Currency AddDepositItem(const DepositRecord& deposit, int item);
  void AddVoucher(const VoucherRecord& voucher);

  const std::string& Code() const { return code_; }
  const std::string& Name() const { return name_; }

  // The rows of each section in the order in which they came.
  const std::vector<CheckRecord>& Checks() const { return checks_; }
  const std::vector<WireRecord>& Wires() const { return wires_; }
  const std::vector<LedgerDeposit>& Deposits() const { return deposits_; }
  const std::vector<VoucherRecord>& Vouchers() const { return vouchers_; }

  Currency TotalChecks() const { return total_checks_; }
  int TotalChecksCount() const { return static_cast<int>(checks_.size()); }
  Currency VoidChecks() const { return void_checks_; }
  int VoidChecksCount() const { return void_count_; }
  Currency NetChecks() const { return total_checks_ - void_checks_; }
  Currency TotalWires() const { return total_wires_; }
  int TotalWiresCount() const { return static_cast<int>(wires_.size()); }
  Currency NetDisbursements() const { return NetChecks() + total_wires_; }
  Currency TotalDeposits() const { return total_deposits_; }
  int TotalDepositsCount() const { return static_cast<int>(deposits_.size()); }
  Currency BankBalance() const { return total_deposits_ - NetDisbursements(); }
  Currency TotalVouchers() const { return total_vouchers_; }
  Currency AdjustedBalance() const { return BankBalance() - total_vouchers_; }

  bool HasTransactions() const;
  // Whether a transaction of any kind reads "Outstanding".
  bool HasOutstanding() const;

 private:
  std::string code_;
  std::string name_;
  std::vector<CheckRecord> checks_;
  std::vector<WireRecord> wires_;
  std::vector<LedgerDeposit> deposits_;
  std::vector<VoucherRecord> vouchers_;
  Currency total_checks_;
  Currency void_checks_;
  int void_count_ = 0;
  Currency total_wires_;
  Currency total_deposits_;
  Currency total_vouchers_;
};

class FileLedger {
 public:
  explicit FileLedger(std::string_view file_number) : file_number_(file_number) {}

  // Takes the ledger of the next bank; one without transactions is left out.
  void AddBank(BankLedger bank);

  const std::string& FileNumber() const { return file_number_; }
  const std::vector<BankLedger>& Banks() const { return banks_; }
  Currency FileBalance() const { return balance_; }
  Currency Vouchered() const { return vouchered_; }
  // "Balanced", "Over Drawn" or "Funds Available".
  std::string_view Condition() const;
  // "Cleared" when nothing of the file is outstanding, a voucher included; else "Outstanding".
  std::string_view Status() const;
  // "Yes" when more than one bank has transactions of the file, else "No".
  std::string_view MultipleBanks() const { return banks_.size() > 1 ? "Yes" : "No"; }

 private:
  std::string file_number_;
  std::vector<BankLedger> banks_;
  Currency balance_;
  Currency vouchered_;
};

// How a transaction's status reads in a ledger: the status text for "C", "V" and "S", else "Outstanding".
std::string LedgerStatusText(std::string_view code);

}  // namespace tallwick
