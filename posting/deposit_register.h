// The deposits of a bank as rows, latest first: one row per deposit, or one per line item.
#pragma once

#include <array>
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
  int item = 0;  // that the row shows; 0 = it shows the deposit
};

// The fields by which passes over many deposits look at items, without reading the rest.
struct DepositItemFields {
  void LookUp(const DepositTable& deposits);
  Currency Amount(const DepositTable& deposits, int item) const;  // items from 1
  std::string Status(const DepositTable& deposits, int item) const;
  bool IsUsed(const DepositTable& deposits, int item) const;

 private:
  struct Item {
    FieldHandle file;
    FieldHandle source;
    FieldHandle amount;
    FieldHandle status;
  };
  std::array<Item, kDepositItems> items_{};
};

class DepositRegister : public TableRegister {
 public:
  explicit DepositRegister(const TableHome& home)
      : TableRegister(deposits_, "DEPODATED"), deposits_(home), xrefs_(home) {}
  // False after a message when the bank's deposit table cannot be opened.
  bool Open(std::string_view bank_code);

  std::vector<std::string> Headings() const override;
  bool IsNumeric(std::size_t column) const override { return column >= 1 && column <= 3; }
  std::string WidestText(std::size_t column) const override { return column == 5 ? "Partly Cleared" : ""; }
  // By date, or by the file number of an item.
  std::optional<std::size_t> FindRow(std::string_view text) override;
  DepositKey KeyAt(std::size_t row);

 private:
  Shown ReadRow(int part) override;
  Currency Amount(int part) override;
  std::vector<SearchKey> KeysFor(std::string_view text) const override;

  DepositTable deposits_;
  DepositXrefTable xrefs_;
  DepositItemFields fields_;
};

// Line items of the deposits, the last one of the latest deposit first.
class DepositItemRegister : public TableRegister {
 public:
  explicit DepositItemRegister(const TableHome& home)
      : TableRegister(deposits_, "DEPODATED"), deposits_(home), xrefs_(home) {}
  // As DepositRegister.
  bool Open(std::string_view bank_code);
  // Shows items of one status, "" shows all.
  void ShowStatus(std::string_view status);

  std::vector<std::string> Headings() const override;
  bool IsNumeric(std::size_t column) const override { return column == 1 || column == 2 || column == 5; }
  std::optional<std::size_t> FindRow(std::string_view text) override;
  DepositKey KeyAt(std::size_t row);

 private:
  Shown ReadRow(int item) override;
  Currency Amount(int item) override;
  std::vector<int> WantedParts() override;
  bool HasFilter() const override { return true; }  // a deposit is as many rows as it has items
  std::vector<SearchKey> KeysFor(std::string_view text) const override;

  DepositTable deposits_;
  DepositXrefTable xrefs_;
  DepositItemFields fields_;
  std::string status_;
};

}  // namespace tallwick
