// The checks of a bank as rows: by number, highest first; by payee, in the order of the alphabet; or by
// amount, greatest first. All of them or those of one status.
#pragma once

#include "posting/table_register.h"
#include "tables/check_table.h"

namespace tallwick {

class CheckRegister : public TableRegister {
 public:
  explicit CheckRegister(const TableHome& home) : TableRegister(checks_, "CHXNUMBER"), checks_(home) {}
  // False after a message when the bank's check table cannot be opened.
  bool Open(std::string_view bank_code);

  enum class Order { kNumber, kPayee, kAmount };
  void ShowOrder(Order order);
  enum class Only { kAll, kOutstanding, kCleared, kVoided, kStopped };
  void ShowOnly(Only only);
  // The rows are being put in the order of the amounts.
  bool IsSorting() { return IsSorted() && RowsKnown() == 0 && PercentRead() < 100; }

  std::vector<std::string> Headings() const override;
  bool IsNumeric(std::size_t column) const override;
  std::string WidestText(std::size_t column) const override { return column == 5 ? "Stopped Payment" : ""; }
  // In the order of the amounts a text that is one leads to its first check.
  std::optional<std::size_t> FindRow(std::string_view text) override;

  // The number of the check in a row, "" when it is gone.
  std::string NumberAt(std::size_t row);

 private:
  Shown ReadRow(int part) override;
  Currency Amount(int part) override;
  std::vector<int> WantedParts() override;
  bool HasFilter() const override { return only_ != Only::kAll; }
  bool IsSorted() const override { return order_ == Order::kAmount; }
  std::vector<SearchKey> KeysFor(std::string_view text) const override;

  CheckTable checks_;
  Order order_ = Order::kNumber;
  Only only_ = Only::kAll;
};

}  // namespace tallwick
