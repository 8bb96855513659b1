// What every escrow file holds: receipts, disbursements, balance and last activity, from one pass over a
// bank's items. The sums are those of the files' ledgers: deposit items, less wires, less checks that were
// neither voided nor stopped.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/currency.h"
#include "core/date.h"
#include "tables/bank_tables.h"
#include "tables/file_sums.h"
#include "tables/record_pass.h"

namespace tallwick {

struct FileStanding {
  std::string file_number;  // UTF-8, trimmed, upper case; "" = charged to no file
  Currency receipts;
  Currency disbursements;
  Date last_activity;  // the latest date of an item, a voided one included; empty where none has a date
  Currency Balance() const { return receipts - disbursements; }
  // "Balanced", "Over Drawn" or "Funds Available".
  std::string_view Condition() const;
};

// "Balanced" for 0, "Over Drawn" below, "Funds Available" above.
std::string_view ConditionOfBalance(Currency balance);

// The file number as lists show it: "(no file)" for what is charged to none.
std::string ShownFileNumber(std::string_view file_number);

class FileStandings {
 public:
  // `day` is year * 10000 + month * 100 + day, 0 for no date.
  void Receive(std::string_view file_number, Currency amount, std::int32_t day);
  void Pay(std::string_view file_number, Currency amount, std::int32_t day);
  // By file number.
  std::vector<FileStanding> InOrder() const;

 private:
  struct Sums {
    Currency receipts;
    Currency disbursements;
    std::int32_t day = 0;
    Sums& operator+=(const Sums& more);
  };

  FileSums<Sums> files_;
};

// Adds the items of a bank's open tables, of those posted up to the period key `as_of` where it is not 0. A
// check voided or stopped on a later statement has not come back by then.
PassEnd ReadStandings(BankTables& tables, std::int32_t as_of, const PassProgress& progress,
                      FileStandings& standings);

}  // namespace tallwick
