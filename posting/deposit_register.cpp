#include "posting/deposit_register.h"

#include "core/text.h"
#include "posting/deposit_facts.h"
#include "posting/entry_problems.h"
#include "shell/status_style.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

constexpr std::string_view kTag = "DEPODATED";

bool IsUsed(const DepositItem& item) {
  return !item.file_number.empty() || !item.amount.IsZero();
}

}  // namespace

// --- One row per deposit ---

bool DepositRegister::Open(std::string_view bank_code) {
  if (deposits_.Open(bank_code) <= 0 || xrefs_.Open(bank_code) <= 0) return false;
  CountAgain();
  return true;
}

DepositRegister::Shown DepositRegister::ReadRow() {
  const DepositRecord deposit = deposits_.Read();
  const DepositState state = StateOf(deposit);
  return {{DepositDateText(deposit.dated), deposit.sequence, std::to_string(deposit.item_count),
           AmountText(DepositTotal(deposit)),
           deposit.accounting.IsEmpty() ? "" : ShortForm(deposit.accounting), state.text},
          state.style};
}

std::vector<SearchKey> DepositRegister::KeysFor(std::string_view text) const {
  const std::optional<Date> date = ParseDisplayDate(text);
  if (!date || date->IsEmpty()) return {};
  return {{kTag, StoredDate(*date)}};
}

std::optional<std::size_t> DepositRegister::FindRow(std::string_view text) {
  if (const std::optional<std::size_t> row = TableRegister::FindRow(text)) return row;
  if (!xrefs_.Seek("DXRFFILENO", text)) return std::nullopt;
  const DepositXrefRecord xref = xrefs_.Read();
  if (!deposits_.SeekDeposit(xref.dated, xref.sequence)) return std::nullopt;
  return RowOfRecord(deposits_.RecordNumber());
}

std::vector<std::string> DepositRegister::Headings() const {
  return {"Date", "Seq", "Items", "Total", "Period", "Status"};
}

DepositKey DepositRegister::KeyAt(std::size_t row) {
  if (!GoToRow(row)) return {};
  const DepositRecord deposit = deposits_.Read();
  return {deposit.dated, deposit.sequence};
}

// --- One row per item ---

void DepositItemRegister::ShowStatus(std::string_view status) {
  status_ = status;
  places_.clear();
  read_record_ = 0;
  last_record_ = 0;
  table_records_ = deposits_.RecordCount();
  deposits_.Data().SetReadAhead(deposits_.Handle(), true);
  for (bool on = deposits_.Top(kTag); on; on = deposits_.Skip()) AddItemsOfRecord();
  deposits_.Data().SetReadAhead(deposits_.Handle(), false);
}

void DepositItemRegister::Refresh() {
  const bool one_more = deposits_.RecordCount() == table_records_ + 1 && deposits_.Bottom(kTag);
  const std::int32_t last = deposits_.RecordNumber();
  const bool behind_last =
      one_more && (deposits_.Skip(-1) ? deposits_.RecordNumber() == last_record_ : last_record_ == 0);
  if (!behind_last || !deposits_.GoTo(last)) return ShowStatus(std::string(status_));
  ++table_records_;
  AddItemsOfRecord();
}

void DepositItemRegister::AddItemsOfRecord() {
  last_record_ = deposits_.RecordNumber();
  const DepositRecord deposit = deposits_.Read();
  for (int item = 1; item <= kDepositItems; ++item) {
    const DepositItem& one = deposit.items[static_cast<std::size_t>(item) - 1];
    if (IsUsed(one) && (status_.empty() || one.status == status_)) places_.push_back({last_record_, item});
  }
}

const DepositItem* DepositItemRegister::ItemAt(std::size_t row) {
  if (row >= places_.size()) return nullptr;
  const Place& place = places_[places_.size() - 1 - row];
  if (read_record_ != place.record) {
    read_record_ = 0;
    if (!deposits_.GoTo(place.record) || deposits_.Data().IsRecordDeleted(deposits_.Handle())) return nullptr;
    deposits_.Read(read_);
    read_record_ = place.record;
  }
  return &read_.items[static_cast<std::size_t>(place.item) - 1];
}

std::vector<std::string> DepositItemRegister::Headings() const {
  return {"Date", "Seq", "Item", "File", "Source", "Amount", "Wire In", "Status"};
}

std::vector<std::string> DepositItemRegister::Row(std::size_t row) {
  const DepositItem* item = ItemAt(row);
  if (item == nullptr) return {};
  const int place = static_cast<int>(item - read_.items.data()) + 1;
  return {DepositDateText(read_.dated),
          read_.sequence,
          std::to_string(place),
          item->file_number,
          item->source,
          AmountText(item->amount),
          IsWireIn(read_, place) ? "Wire" : "",
          VoucherStatusText(item->status)};
}

std::string DepositItemRegister::RowStyle(std::size_t row) {
  const DepositItem* item = ItemAt(row);
  return item != nullptr ? std::string(StatusStyle(item->status)) : "";
}

DepositKey DepositItemRegister::KeyAt(std::size_t row) {
  return ItemAt(row) != nullptr ? DepositKey{read_.dated, read_.sequence} : DepositKey{};
}

}  // namespace tallwick
