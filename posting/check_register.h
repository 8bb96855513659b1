// The checks of a bank as rows, highest number first.
#pragma once

#include "posting/table_register.h"
#include "tables/check_table.h"

namespace tallwick {

class CheckRegister : public TableRegister {
 public:
  explicit CheckRegister(const TableHome& home) : TableRegister(checks_, "CHXNUMBER"), checks_(home) {}
  // False after a message when the bank's check table cannot be opened.
  bool Open(std::string_view bank_code);

  std::vector<std::string> Headings() const override;
  bool IsNumeric(std::size_t column) const override;

  // The number of the check in a row, "" when it is gone.
  std::string NumberAt(std::size_t row);

 private:
  Shown ReadRow() override;
  std::vector<SearchKey> KeysFor(std::string_view text) const override;

  CheckTable checks_;
};

}  // namespace tallwick
