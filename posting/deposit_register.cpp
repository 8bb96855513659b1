#include "posting/deposit_register.h"

#include "core/text.h"
#include "posting/deposit_facts.h"
#include "posting/entry_problems.h"
#include "shell/status_style.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

constexpr std::string_view kTag = "DEPODATED";

std::vector<SearchKey> DateKeys(std::string_view text) {
  const std::optional<Date> date = ParseDisplayDate(text);
  if (!date || date->IsEmpty()) return {};
  return {{kTag, StoredDate(*date)}};
}

// On the first deposit with an item of the file, and on the item's cross-reference.
bool SeekDepositOfFile(DepositXrefTable& xrefs, DepositTable& deposits, std::string_view file) {
  if (!xrefs.Seek("DXRFFILENO", file)) return false;
  const DepositXrefRecord xref = xrefs.Read();
  return deposits.SeekDeposit(xref.dated, xref.sequence);
}

}  // namespace

void DepositItemFields::LookUp(const DepositTable& deposits) {
  for (int item = 1; item <= kDepositItems; ++item) {
    const std::string number = std::to_string(item);
    items_[static_cast<std::size_t>(item) - 1] = {
        deposits.Field("DEPOFILE" + number), deposits.Field("DEPOSRC" + number),
        deposits.Field("DEPOAMT" + number), deposits.Field("DEPOSTAT" + number)};
  }
}

Currency DepositItemFields::Amount(const DepositTable& deposits, int item) const {
  const FieldHandle field = items_[static_cast<std::size_t>(item) - 1].amount;
  return deposits.Data().GetCurrencyFieldValueByPointer(deposits.Handle(), field);
}

std::string DepositItemFields::Status(const DepositTable& deposits, int item) const {
  const FieldHandle field = items_[static_cast<std::size_t>(item) - 1].status;
  return deposits.Data().GetStringFieldValueByPointer(deposits.Handle(), field);
}

bool DepositItemFields::IsUsed(const DepositTable& deposits, int item) const {
  const Item& fields = items_[static_cast<std::size_t>(item) - 1];
  const auto text = [&](FieldHandle field) {
    return deposits.Data().GetStringFieldValueByPointer(deposits.Handle(), field);
  };
  DepositItem read;
  read.file_number = text(fields.file);
  read.source = text(fields.source);
  read.amount = Amount(deposits, item);
  return tallwick::IsUsed(read);
}

// --- One row per deposit ---

bool DepositRegister::Open(std::string_view bank_code) {
  if (deposits_.Open(bank_code) <= 0 || xrefs_.Open(bank_code) <= 0) return false;
  fields_.LookUp(deposits_);
  BeginAgain();
  return true;
}

DepositRegister::Shown DepositRegister::ReadRow(int) {
  const DepositRecord deposit = deposits_.Read();
  const DepositState state = StateOf(deposit);
  return {{DepositDateText(deposit.dated), deposit.sequence, std::to_string(deposit.item_count),
           AmountText(DepositTotal(deposit)), ShownPeriod(deposit.accounting), state.text},
          state.style};
}

std::vector<SearchKey> DepositRegister::KeysFor(std::string_view text) const {
  return DateKeys(text);
}

Currency DepositRegister::Amount(int) {
  Currency total;
  for (int item = 1; item <= kDepositItems; ++item) total += fields_.Amount(deposits_, item);
  return total;
}

std::optional<std::size_t> DepositRegister::FindRow(std::string_view text) {
  if (const std::optional<std::size_t> row = TableRegister::FindRow(text)) return row;
  if (!SeekDepositOfFile(xrefs_, deposits_, text)) return std::nullopt;
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

bool DepositItemRegister::Open(std::string_view bank_code) {
  if (deposits_.Open(bank_code) <= 0 || xrefs_.Open(bank_code) <= 0) return false;
  fields_.LookUp(deposits_);
  BeginAgain();
  return true;
}

void DepositItemRegister::ShowStatus(std::string_view status) {
  status_ = status;
  BeginAgain();
}

std::vector<int> DepositItemRegister::WantedParts() {
  std::vector<int> items;
  for (int item = 1; item <= kDepositItems; ++item) {
    if (!fields_.IsUsed(deposits_, item)) continue;
    if (status_.empty() || fields_.Status(deposits_, item) == status_) items.push_back(item);
  }
  return items;
}

Currency DepositItemRegister::Amount(int item) {
  return fields_.Amount(deposits_, item);
}

DepositItemRegister::Shown DepositItemRegister::ReadRow(int item) {
  const DepositRecord deposit = deposits_.Read();
  const DepositItem& one = deposit.items[static_cast<std::size_t>(item) - 1];
  return {
      {DepositDateText(deposit.dated), deposit.sequence, std::to_string(item), one.file_number, one.source,
       AmountText(one.amount), IsWireIn(deposit, item) ? "Wire" : "", VoucherStatusText(one.status)},
      StatusStyle(one.status)};
}

std::vector<std::string> DepositItemRegister::Headings() const {
  return {"Date", "Seq", "Item", "File", "Source", "Amount", "Wire In", "Status"};
}

std::vector<SearchKey> DepositItemRegister::KeysFor(std::string_view text) const {
  return DateKeys(text);
}

// An item by its file number, which the deposit's cross-reference knows.
std::optional<std::size_t> DepositItemRegister::FindRow(std::string_view text) {
  if (const std::optional<std::size_t> row = TableRegister::FindRow(text)) return row;
  if (!SeekDepositOfFile(xrefs_, deposits_, text)) return std::nullopt;
  const std::string item = xrefs_.Read().item;
  std::optional<std::size_t> row = RowOfRecord(deposits_.RecordNumber());
  // The items of a deposit stand together, the last one first.
  for (int step = 0; row && step < kDepositItems; ++step, ++*row) {
    const std::vector<std::string> cells = Row(*row);
    if (cells.size() > 2 && cells[2] == Trim(item)) return row;
  }
  return std::nullopt;
}

DepositKey DepositItemRegister::KeyAt(std::size_t row) {
  const std::optional<int> item = GoToRow(row);
  if (!item) return {};
  const DepositRecord deposit = deposits_.Read();
  return {deposit.dated, deposit.sequence, *item};
}

}  // namespace tallwick
