#include "tables/bank_tables.h"

namespace tallwick {

BankTables::BankTables(const TableHome& home)
    : checks(home), deposits(home), wires(home), vouchers(home), deposit_xrefs(home) {}

bool BankTables::Open(std::string_view bank_code) {
  for (TableBase* table : All()) {
    if (table->Open(bank_code) > 0) continue;
    Close();
    return false;
  }
  return true;
}

void BankTables::Close() {
  for (TableBase* table : All()) table->Close();
}

int BankTables::CreateMissing(std::string_view bank_code) {
  for (TableBase* table : All()) {
    int code = table->Exists(bank_code) ? engine::kSuccess : table->CreateMissing(bank_code);
    if (code != engine::kSuccess) return code;
  }
  return engine::kSuccess;
}

}  // namespace tallwick
