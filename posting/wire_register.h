// The wires of a bank as rows, last number first.
#pragma once

#include <string>

#include "posting/table_register.h"
#include "tables/wire_table.h"

namespace tallwick {

class WireRegister : public TableRegister {
 public:
  explicit WireRegister(const TableHome& home) : TableRegister(wires_, "WIRENUMBER"), wires_(home) {}
  // False after a message when the bank's wire table cannot be opened.
  bool Open(std::string_view bank_code);
  // Shows wires of one status; "" shows all.
  void ShowStatus(std::string_view status);

  std::vector<std::string> Headings() const override;
  bool IsNumeric(std::size_t column) const override { return column == 3; }
  // The number of the wire in a row, "" when it is gone.
  std::string NumberAt(std::size_t row);

 private:
  Shown ReadRow() override;
  bool IsWanted() override;
  bool HasFilter() const override { return !status_.empty(); }
  std::vector<SearchKey> KeysFor(std::string_view text) const override;

  WireTable wires_;
  std::string status_;
};

}  // namespace tallwick
