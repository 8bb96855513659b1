// ESCROW_DEPOXRFS_<bank>: for every escrow file the deposit items of one bank.
#pragma once

#include "tables/typed_table.h"

namespace tallwick {

struct DepositXrefRecord {
  std::string file_number;
  std::string dated;     // of the deposit, "CCYYMMDD"
  std::string sequence;  // of the deposit
  std::string item;      // "1" to "15"
  friend bool operator==(const DepositXrefRecord&, const DepositXrefRecord&) = default;
};

extern const TableLayout kDepositXrefLayout;

class DepositXrefTable : public TypedTable<DepositXrefRecord> {
 public:
  explicit DepositXrefTable(const TableHome& home);
  bool FirstOfFile(std::string_view file_number);  // in the tag DXRFFILENO
  bool NextOfFile(std::string_view file_number);
  bool SeekItem(const DepositXrefRecord& record);
};

}  // namespace tallwick
