// ESCROW_CHECKS_<bank>: one record per check of a bank account.
#pragma once

#include "core/period.h"
#include "tables/typed_table.h"

namespace tallwick {

struct CheckRecord {
  std::string number;
  Date dated;
  std::string payee;
  std::string address1;
  std::string address2;
  std::string city_state;
  Currency amount;
  Period accounting;   // the escrow period in which it was posted
  Period statement;    // the bank statement on which it cleared; empty until then
  std::string status;  // "H", "O", "C", "V" or "S"
  std::string control;
  std::string voucher_number;
  std::string file_number;
  std::string tin;
  std::string reason;  // of a void or a stop payment
  friend bool operator==(const CheckRecord&, const CheckRecord&) = default;
};

extern const TableLayout kCheckLayout;

class CheckTable : public TypedTable<CheckRecord> {
 public:
  explicit CheckTable(const TableHome& home);
  // On the check with this number, in the tag CHXNUMBER; also finds a number stored left-aligned.
  bool SeekNumber(std::string_view number);
  // The first and the following checks of an escrow file, in the tag CHXFILENO.
  bool FirstOfFile(std::string_view file_number);
  bool NextOfFile(std::string_view file_number);
  // The number of the last check in number order, "" when there is none.
  std::string LastNumber();
};

}  // namespace tallwick
