#include "shell/latest_postings.h"

#include <algorithm>

#include "core/text_format.h"
#include "shell/status_style.h"
#include "tables/bank_tables.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

constexpr std::size_t kLatestRows = 12;

// A check, a wire or a voucher.
template <class Record>
LatestPosting ItemPosting(const Record& item, std::string_view kind, std::string_view status) {
  return {item.dated, std::string(kind), item.number,         item.file_number,
          item.payee, item.amount,       std::string(status), StatusStyle(item.status)};
}

LatestPosting PostingOf(const CheckRecord& check) {
  return ItemPosting(check, "Check", CheckStatusText(check.status));
}

LatestPosting PostingOf(const WireRecord& wire) {
  return ItemPosting(wire, "Wire", WireStatusText(wire.status));
}

LatestPosting PostingOf(const VoucherRecord& voucher) {
  LatestPosting posting = ItemPosting(voucher, "Voucher", VoucherStatusText(voucher));
  if (!voucher.check_number.empty()) posting.style = StatusStyle("C");  // it waits for nothing
  return posting;
}

LatestPosting PostingOf(const DepositRecord& deposit) {
  LatestPosting posting;
  posting.kind = "Deposit";
  posting.dated = ParseStoredDate(deposit.dated).value_or(Date{});
  posting.number = deposit.sequence;
  std::vector<std::string> files;
  for (const DepositItem& item : deposit.items) {
    if (!IsUsed(item)) continue;
    if (posting.payee.empty()) posting.payee = item.source;
    posting.amount += item.amount;
    if (std::find(files.begin(), files.end(), item.file_number) == files.end())
      files.push_back(item.file_number);
  }
  posting.file_number = files.size() == 1 ? files.front() : std::to_string(files.size()) + " files";
  posting.status = DepositStatusText(deposit);
  posting.style = StatusStyle(posting.status == VoucherStatusText("C") ? "C" : "O");
  return posting;
}

// The records appended last, from the table's end.
template <class Table>
void AddLatest(Table& table, std::vector<LatestPosting>* latest) {
  std::size_t found = 0;
  for (bool on = table.Bottom(""); on && found < kLatestRows; on = table.Skip(-1)) {
    if (table.Data().IsRecordDeleted(table.Handle())) continue;
    latest->push_back(PostingOf(table.Read()));
    ++found;
  }
}

}  // namespace

std::vector<LatestPosting> ReadLatestPostings(BankTables& tables) {
  std::vector<LatestPosting> latest;
  AddLatest(tables.checks, &latest);
  AddLatest(tables.deposits, &latest);
  AddLatest(tables.wires, &latest);
  AddLatest(tables.vouchers, &latest);
  std::stable_sort(latest.begin(), latest.end(), [](const LatestPosting& left, const LatestPosting& right) {
    return left.dated > right.dated;
  });
  if (latest.size() > kLatestRows) latest.resize(kLatestRows);
  return latest;
}

std::vector<std::string> LatestPostings::Headings() const {
  return {"Date", "Kind", "Number", "File", "Payee or source", "Amount", "Status"};
}

std::vector<std::string> LatestPostings::Row(std::size_t row) {
  if (row >= postings_.size()) return {};
  const LatestPosting& posting = postings_[row];
  return {DisplayDate(posting.dated),
          posting.kind,
          posting.number,
          posting.file_number,
          posting.payee,
          FormatNumber(posting.amount, "#,###,###,##0.00"),
          posting.status};
}

std::string LatestPostings::RowStyle(std::size_t row) {
  return row < postings_.size() ? postings_[row].style : "";
}

}  // namespace tallwick
