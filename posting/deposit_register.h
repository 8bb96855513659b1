// The deposits of a bank as rows, latest first: one row per deposit, or one per line item.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "posting/table_register.h"
#include "tables/deposit_table.h"
#include "tables/deposit_xref_table.h"

namespace tallwick {

// What names a deposit.
struct DepositKey {
  std::string dated;  // "CCYYMMDD"; "" when the row is gone
  std::string sequence;
};

class DepositRegister : public TableRegister {
 public:
  explicit DepositRegister(const TableHome& home)
      : TableRegister(deposits_, "DEPODATED"), deposits_(home), xrefs_(home) {}
  // False after a message when the bank's deposit table cannot be opened.
  bool Open(std::string_view bank_code);

  std::vector<std::string> Headings() const override;
  bool IsNumeric(std::size_t column) const override { return column >= 1 && column <= 3; }
  // By date, or by the file number of an item.
  std::optional<std::size_t> FindRow(std::string_view text) override;
  DepositKey KeyAt(std::size_t row);

 private:
  Shown ReadRow() override;
  std::vector<SearchKey> KeysFor(std::string_view text) const override;

  DepositTable deposits_;
  DepositXrefTable xrefs_;
};

// Line items of the deposits. Holds the place of every row, not the rows.
class DepositItemRegister : public RowSource {
 public:
  explicit DepositItemRegister(const TableHome& home) : deposits_(home) {}
  bool Open(std::string_view bank_code) { return deposits_.Open(bank_code) > 0; }
  // Shows items of one status, "" shows all; reads the table.
  void ShowStatus(std::string_view status);
  // Looks at the table again.
  void Refresh();

  std::vector<std::string> Headings() const override;
  std::size_t RowCount() override { return places_.size(); }
  std::vector<std::string> Row(std::size_t row) override;
  std::string RowStyle(std::size_t row) override;
  bool IsNumeric(std::size_t column) const override { return column == 1 || column == 2 || column == 5; }
  DepositKey KeyAt(std::size_t row);

 private:
  struct Place {
    std::int32_t record;
    int item;  // from 1
  };
  void AddItemsOfRecord();
  // The item of a row, and the deposit that it is read with; null when it is gone.
  const DepositItem* ItemAt(std::size_t row);

  DepositTable deposits_;
  std::string status_;
  std::vector<Place> places_;       // in the order of the tag, so that the last is the first row
  std::int32_t last_record_ = 0;    // at the tag's end
  std::int32_t table_records_ = 0;  // deleted ones included
  std::int32_t read_record_ = 0;    // whose deposit is in read_; 0 = none
  DepositRecord read_;
};

}  // namespace tallwick
