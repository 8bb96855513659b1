// ESCROW_BANKS: one record per escrow bank account.
#pragma once

#include "core/period.h"
#include "tables/typed_table.h"

namespace tallwick {

// Columns of the bank's clearing file, from 1; 0 = not set.
struct ClearingColumns {
  std::int32_t first = 0;
  std::int32_t last = 0;
  friend bool operator==(const ClearingColumns&, const ClearingColumns&) = default;
};

struct BankRecord {
  std::string code;
  std::string name;
  std::string address1;
  std::string address2;
  std::string city_state;
  std::string account_number;
  std::string phone;
  Period accounting;  // day 0 = the bank works in month-and-year periods
  Period reconciled;  // the last reconciliation
  Period work_in_progress;
  Period purged;
  std::int32_t auto_date = 0;  // 1 = the accounting date may be advanced to today
  Currency beginning_balance;
  Currency ending_balance;
  Currency statement_balance;
  Currency adjusting_transactions;
  Currency statement_credits;
  Currency statement_charges;
  std::int64_t last_voucher = 0;  // the last voucher number used
  ClearingColumns clearing_account;
  ClearingColumns clearing_check;
  ClearingColumns clearing_date;
  std::string clearing_date_format;
  ClearingColumns clearing_amount;
  std::int32_t date_type = 0;  // 0 = month-and-year periods
  std::string check_stock;
  std::string check_position;  // on the printed page
  std::int32_t check_copies = 0;
  bool check_inventory = false;
  std::string lowest_check;  // of the stock
  std::string highest_check;
  bool positive_pay = false;
  bool audit_trail = false;
  std::string report_from;
  std::string report_through;
  std::string report_statement;
  bool month_statements = false;  // cleared in the statement's month counts as cleared on its date
  std::int32_t check_paper = 0;
  std::string routing_number;
  std::int32_t print_security_line = 0;
  std::int32_t security_line_x = 0;
  std::int32_t security_line_y = 0;
  std::int32_t security_line_angle = 0;
  friend bool operator==(const BankRecord&, const BankRecord&) = default;
};

extern const TableLayout kBankLayout;

class BankTable : public TypedTable<BankRecord> {
 public:
  explicit BankTable(const TableHome& home);
  bool SeekCode(std::string_view code);  // in the tag BANKCODE
  std::optional<BankRecord> Find(std::string_view code);
  std::vector<BankRecord> InNameOrder();
  // The bank's key in that order, for where the index cannot be trusted: bytes that compare as its tag does.
  static std::string NameKey(const BankRecord& bank);
  // Adds the bank and makes those of its tables that are missing. A code that cannot name tables is refused
  // with a message (engine::kErrorFieldValue). Codes otherwise as Add.
  int AddBank(const BankRecord& bank);
};

}  // namespace tallwick
