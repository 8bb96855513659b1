// The vouchers of a bank as rows, highest number first.
#pragma once

#include <string>

#include "posting/table_register.h"
#include "tables/voucher_table.h"

namespace tallwick {

class VoucherRegister : public TableRegister {
 public:
  explicit VoucherRegister(const TableHome& home) : TableRegister(vouchers_, "VCHRNUMBER"), vouchers_(home) {}
  // False after a message when the bank's voucher table cannot be opened.
  bool Open(std::string_view bank_code);
  // Shows vouchers of one status; "" shows all.
  void ShowStatus(std::string_view status);

  std::vector<std::string> Headings() const override;
  bool IsNumeric(std::size_t column) const override { return column == 0 || column == 3; }
  // The number of the voucher in a row, "" when it is gone.
  std::string NumberAt(std::size_t row);

 private:
  Shown ReadRow() override;
  bool IsWanted() override;
  bool HasFilter() const override { return !status_.empty(); }
  std::vector<SearchKey> KeysFor(std::string_view text) const override;

  VoucherTable vouchers_;
  std::string status_;
};

}  // namespace tallwick
