// The register of records that go by one number and have a status: wires and vouchers, last number first.
#pragma once

#include <algorithm>

#include "posting/table_register.h"
#include "tables/status_text.h"

namespace tallwick {

// What the rows show.
template <class Record>
struct ItemRows {
  std::string_view number_tag;
  std::string_view status_field;
  std::string_view amount_field;
  std::string Record::*number;
  std::string Record::*status;
  std::vector<std::string> headings;
  std::vector<std::size_t> numeric_columns;
  std::vector<std::string> (*cells)(const Record&);
  std::vector<SearchKey> (*keys)(std::string_view text);
  std::string (*style)(std::string_view status);
  // A record with something in this field counts as cleared, whatever its status; "" for none.
  std::string_view used_field = {};
};

template <class Table, class Record>
class ItemRegister : public TableRegister {
 public:
  ItemRegister(const TableHome& home, ItemRows<Record> rows)
      : TableRegister(table_, rows.number_tag), table_(home), rows_(std::move(rows)) {}

  // False after a message when the bank's table cannot be opened.
  bool Open(std::string_view bank_code) {
    if (table_.Open(bank_code) <= 0) return false;
    BeginAgain();
    return true;
  }
  // Shows items of one status, as ItemRows has it; "" shows all.
  void ShowStatus(std::string_view status) {
    status_ = status;
    BeginAgain();
  }
  // The number of the item in a row, "" when it is gone.
  std::string NumberAt(std::size_t row) { return GoToRow(row) ? table_.Read().*rows_.number : ""; }

  std::vector<std::string> Headings() const override { return rows_.headings; }
  bool IsNumeric(std::size_t column) const override {
    const auto& numeric = rows_.numeric_columns;
    return std::find(numeric.begin(), numeric.end(), column) != numeric.end();
  }

 private:
  Shown ReadRow(int) override {
    const Record record = table_.Read();
    return {rows_.cells(record), rows_.style(IsUsed() ? "C" : std::string_view(record.*rows_.status))};
  }
  Currency Amount(int) override {
    return table_.Data().GetCurrencyFieldValueByPointer(table_.Handle(), table_.Field(rows_.amount_field));
  }
  std::vector<int> WantedParts() override {
    const std::string status = IsUsed() ? "C" : FieldText(rows_.status_field);
    const bool wanted = status_ == "O" ? IsOutstanding(status) : status == status_;
    return wanted ? std::vector{0} : std::vector<int>();
  }
  std::string FieldText(std::string_view field) {
    return table_.Data().GetStringFieldValueByPointer(table_.Handle(), table_.Field(field));
  }
  bool IsUsed() { return !rows_.used_field.empty() && !FieldText(rows_.used_field).empty(); }
  bool HasFilter() const override { return !status_.empty(); }
  std::vector<SearchKey> KeysFor(std::string_view text) const override { return rows_.keys(text); }

  Table table_;
  const ItemRows<Record> rows_;
  std::string status_;
};

}  // namespace tallwick
