// What belongs together: the references that a transaction must have, and what a reference leads to. The
// examination of a company and the check of one bank both judge by these rules.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tables/bank_tables.h"
#include "tables/xref_table.h"

namespace tallwick {

// A table of items that stand alone, with one reference each.
struct ItemKind {
  std::string_view kind;   // of the reference: "C"
  std::string_view title;  // "Check"
  std::string_view number_field;
  std::string_view file_field;
  XrefRecord (*xref)(std::string_view file, std::string_view bank, std::string_view number);
};
extern const ItemKind kCheckItems;
extern const ItemKind kWireItems;
extern const ItemKind kVoucherItems;

// The item at a table's current record.
struct Item {
  std::string number;
  std::string file_number;
};
Item CurrentItem(const TableBase& table, const ItemKind& kind);

// A line of a deposit that belongs to a file, and its two references.
struct ReferredItem {
  int item = 0;  // 1 to 15
  XrefRecord xref;
  DepositXrefRecord own;
};
std::vector<ReferredItem> ItemsOf(const DepositRecord& deposit, std::string_view bank_code);

enum class ReferenceTarget { kThere, kUnderAnotherFile, kNotThere, kNotJudged };

// Follows references into a bank's tables. Moves their current records.
class ReferenceTargets {
 public:
  // `may_judge` says of a table whether a seek in it tells the truth.
  ReferenceTargets(BankTables& bank, std::function<bool(const TableBase&)> may_judge)
      : bank_(bank), may_judge_(std::move(may_judge)) {}

  ReferenceTarget Find(const XrefRecord& xref);
  ReferenceTarget Find(const DepositXrefRecord& xref);

 private:
  template <class Items>
  ReferenceTarget FindItem(Items& items, const ItemKind& kind, const XrefRecord& xref);
  ReferenceTarget FindDepositItem(std::string_view dated, std::string_view sequence, int item,
                                  std::string_view file);

  BankTables& bank_;
  std::function<bool(const TableBase&)> may_judge_;
};

}  // namespace tallwick
