#include "recon/recon_items.h"

#include "core/date.h"
#include "posting/entry_problems.h"
#include "reports/file_standings.h"
#include "shell/status_style.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

constexpr std::size_t kItemColumns = 9;

class ItemRows : public RowSource {
 public:
  ItemRows(const TableHome& home, std::vector<ReconEntry> entries)
      : tables_(home), entries_(std::move(entries)) {}
  bool Open(const std::string& bank_code) { return tables_.Open(bank_code); }

  std::vector<std::string> Headings() const override {
    return {"Date",       "Kind",      "Number", "File", "Amount", "Payee or source",
            "Accounting", "Statement", "Status"};
  }
  std::size_t RowCount() override { return entries_.size(); }
  std::vector<std::string> Row(std::size_t row) override {
    if (row >= entries_.size()) return {};
    const ReconEntry& entry = entries_[row];
    switch (entry.kind) {
      case ReconKind::kCheck:
        return CheckRow(entry);
      case ReconKind::kWire:
        return WireRow(entry);
      case ReconKind::kDeposit:
        return DepositRow(entry);
    }
    return {};
  }
  std::string RowStyle(std::size_t row) override {
    return row < entries_.size() ? StatusStyle(StatusOf(entries_[row])) : "";
  }
  bool IsNumeric(std::size_t column) const override { return column == 4; }

 private:
  std::vector<std::string> CheckRow(const ReconEntry& entry) {
    if (!tables_.checks.GoTo(entry.record)) return {};
    const CheckRecord check = tables_.checks.Read();
    return {DisplayDate(check.dated),
            "Check",
            check.number,
            check.file_number,
            AmountText(entry.amount),
            check.payee,
            ShownPeriod(check.accounting),
            ShownPeriod(check.statement),
            CheckStatusText(check.status)};
  }
  std::vector<std::string> WireRow(const ReconEntry& entry) {
    if (!tables_.wires.GoTo(entry.record)) return {};
    const WireRecord wire = tables_.wires.Read();
    return {DisplayDate(wire.dated),
            "Wire",
            wire.number,
            wire.file_number,
            AmountText(entry.amount),
            wire.payee,
            ShownPeriod(wire.accounting),
            ShownPeriod(wire.statement),
            WireStatusText(wire.status)};
  }
  std::vector<std::string> DepositRow(const ReconEntry& entry) {
    if (!tables_.deposits.GoTo(entry.record)) return {};
    const DepositRecord deposit = tables_.deposits.Read();
    const DepositItem& item = deposit.items[static_cast<std::size_t>(entry.item) - 1];
    const std::string date = DisplayDate(ParseStoredDate(deposit.dated).value_or(Date()));
    return {date,
            "Deposit",
            deposit.sequence + "/" + std::to_string(entry.item),
            item.file_number,
            AmountText(entry.amount),
            item.source,
            ShownPeriod(deposit.accounting),
            ShownPeriod(item.statement),
            VoucherStatusText(item.status)};
  }
  std::string StatusOf(const ReconEntry& entry) {
    if (entry.kind == ReconKind::kCheck)
      return tables_.checks.GoTo(entry.record) ? tables_.checks.Read().status : "";
    if (entry.kind == ReconKind::kWire)
      return tables_.wires.GoTo(entry.record) ? tables_.wires.Read().status : "";
    if (!tables_.deposits.GoTo(entry.record)) return {};
    return tables_.deposits.Read().items[static_cast<std::size_t>(entry.item) - 1].status;
  }

  BankTables tables_;
  const std::vector<ReconEntry> entries_;
};

class FileRows : public RowSource {
 public:
  explicit FileRows(std::vector<FileBalance> files) : files_(std::move(files)) {}
  std::vector<std::string> Headings() const override { return {"File", "Balance", "Escrow Condition"}; }
  std::size_t RowCount() override { return files_.size(); }
  std::vector<std::string> Row(std::size_t row) override {
    if (row >= files_.size()) return {};
    const FileBalance& file = files_[row];
    return {ShownFileNumber(file.file_number), AmountText(file.balance),
            std::string(ConditionOfBalance(file.balance))};
  }
  std::string RowStyle(std::size_t row) override {
    return row < files_.size() && files_[row].balance.IsNegative() ? "stopped" : "";
  }
  bool IsNumeric(std::size_t column) const override { return column == 1; }

 private:
  const std::vector<FileBalance> files_;
};

}  // namespace

bool ReconList::Takes(const ReconEntry& entry) const {
  const bool kind = entry.kind == ReconKind::kCheck  ? checks
                    : entry.kind == ReconKind::kWire ? wires
                                                     : deposits;
  return kind && (entry.figures & figure) != 0;
}

ReconListSum SumOf(const std::vector<ReconEntry>& entries, const ReconList& list) {
  ReconListSum sum;
  for (const ReconEntry& entry : entries) {
    if (!list.Takes(entry)) continue;
    sum.sum += entry.amount;
    ++sum.count;
  }
  return sum;
}

std::shared_ptr<RowSource> MakeItemRows(const TableHome& home, const std::string& bank_code,
                                        const std::vector<ReconEntry>& entries, const ReconList& list) {
  std::vector<ReconEntry> taken;
  for (const ReconEntry& entry : entries) {
    if (list.Takes(entry)) taken.push_back(entry);
  }
  auto rows = std::make_shared<ItemRows>(home, std::move(taken));
  if (!rows->Open(bank_code)) return nullptr;
  return rows;
}

std::optional<ItemRoute> RouteOfRow(const std::vector<std::string>& cells) {
  if (cells.size() != kItemColumns) return std::nullopt;
  const std::string& number = cells[2];  // of a deposit with the item behind it
  return RouteToItem(cells[1], number.substr(0, number.find('/')), cells[0]);
}

std::shared_ptr<RowSource> MakeFileRows(std::vector<FileBalance> files) {
  return std::make_shared<FileRows>(std::move(files));
}

}  // namespace tallwick
