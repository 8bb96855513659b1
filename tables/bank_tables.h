// The five tables of one bank, opened and closed together.
#pragma once

#include "tables/check_table.h"
#include "tables/deposit_table.h"
#include "tables/deposit_xref_table.h"
#include "tables/voucher_table.h"
#include "tables/wire_table.h"

namespace tallwick {

struct BankTables {
  explicit BankTables(const TableHome& home);
  // True when all five are open; else none is, and the user has been told why.
  bool Open(std::string_view bank_code);
  void Close();
  // Makes the tables that are missing. 0, or the first failure's code after its message.
  int CreateMissing(std::string_view bank_code);
  std::array<TableBase*, 5> All() { return {&checks, &deposits, &wires, &vouchers, &deposit_xrefs}; }

  CheckTable checks;
  DepositTable deposits;
  WireTable wires;
  VoucherTable vouchers;
  DepositXrefTable deposit_xrefs;
};

}  // namespace tallwick
