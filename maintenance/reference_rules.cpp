#include "maintenance/reference_rules.h"

#include "core/text.h"
#include "tables/keys.h"

namespace tallwick {
namespace {

// "1" to "15"; 0 for anything else.
int ItemNumber(std::string_view text) {
  const std::string_view digits = Trim(text);
  if (digits.empty() || digits.size() > 2 || !IsAllDigits(digits)) return 0;
  const int item = std::stoi(std::string(digits));
  return item <= kDepositItems ? item : 0;
}

}  // namespace

const ItemKind kCheckItems = {"C", "Check", "CHXNUMBER", "CHXFILENO", CheckXref};
const ItemKind kWireItems = {"W", "Wire", "WIRENUMBER", "WIREFILENO", WireXref};
const ItemKind kVoucherItems = {"V", "Voucher", "VCHRNUMBER", "VCHRFILENO", VoucherXref};

Item CurrentItem(const TableBase& table, const ItemKind& kind) {
  const auto text = [&](std::string_view field) {
    return table.Data().GetStringFieldValueByPointer(table.Handle(), table.Field(field));
  };
  return {text(kind.number_field), text(kind.file_field)};
}

std::vector<ReferredItem> ItemsOf(const DepositRecord& deposit, std::string_view bank_code) {
  std::vector<ReferredItem> items;
  for (int item = 1; item <= kDepositItems; ++item) {
    const std::string& file = deposit.items[static_cast<std::size_t>(item) - 1].file_number;
    if (file.empty()) continue;
    items.push_back({item,
                     DepositItemXref(file, bank_code, deposit.dated, deposit.sequence, item),
                     {file, deposit.dated, deposit.sequence, std::to_string(item)}});
  }
  return items;
}

ReferenceTarget ReferenceTargets::Find(const XrefRecord& xref) {
  if (xref.kind == kCheckItems.kind) return FindItem(bank_.checks, kCheckItems, xref);
  if (xref.kind == kWireItems.kind) return FindItem(bank_.wires, kWireItems, xref);
  if (xref.kind == kVoucherItems.kind) return FindItem(bank_.vouchers, kVoucherItems, xref);
  // A deposit item's reference: 8 characters date, 2 sequence, 2 item.
  const std::string& reference = xref.reference;
  if (xref.kind != "D" || reference.size() < 12) return ReferenceTarget::kNotThere;
  return FindDepositItem(reference.substr(0, 8), reference.substr(8, 2), ItemNumber(reference.substr(10, 2)),
                         xref.file_number);
}

ReferenceTarget ReferenceTargets::Find(const DepositXrefRecord& xref) {
  return FindDepositItem(xref.dated, xref.sequence, ItemNumber(xref.item), xref.file_number);
}

template <class Items>
ReferenceTarget ReferenceTargets::FindItem(Items& items, const ItemKind& kind, const XrefRecord& xref) {
  if (!may_judge_(items)) return ReferenceTarget::kNotJudged;
  if (!items.SeekNumber(xref.reference)) return ReferenceTarget::kNotThere;
  return SameKey(CurrentItem(items, kind).file_number, xref.file_number) ? ReferenceTarget::kThere
                                                                         : ReferenceTarget::kUnderAnotherFile;
}

ReferenceTarget ReferenceTargets::FindDepositItem(std::string_view dated, std::string_view sequence, int item,
                                                  std::string_view file) {
  if (!may_judge_(bank_.deposits)) return ReferenceTarget::kNotJudged;
  if (item == 0 || !bank_.deposits.SeekDeposit(dated, sequence)) return ReferenceTarget::kNotThere;
  const std::string held = bank_.deposits.Read().items[static_cast<std::size_t>(item) - 1].file_number;
  if (SameKey(held, file)) return ReferenceTarget::kThere;
  return held.empty() ? ReferenceTarget::kNotThere : ReferenceTarget::kUnderAnotherFile;
}

}  // namespace tallwick
