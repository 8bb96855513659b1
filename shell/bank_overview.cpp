#include "shell/bank_overview.h"

#include <algorithm>
#include <functional>

#include "core/text_format.h"
#include "shell/company_tables.h"
#include "shell/status_style.h"
#include "tables/bank_tables.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

constexpr std::size_t kLatestRows = 12;

// The fields of one table that a pass needs, by their kept handles.
class Fields {
 public:
  explicit Fields(TableBase& table) : table_(table) {}
  Currency Amount(FieldHandle field) const {
    return Data().GetCurrencyFieldValueByPointer(table_.Handle(), field);
  }
  std::string Text(FieldHandle field) const {
    return Data().GetStringFieldValueByPointer(table_.Handle(), field);
  }
  std::int32_t Number(FieldHandle field) const {
    return static_cast<std::int32_t>(Data().GetIntegerByPointer(table_.Handle(), field));
  }

 private:
  clsKVRData& Data() const { return table_.Data(); }
  TableBase& table_;
};

// The key of a period whose three fields begin with `prefix` ("CHXACCT").
class PeriodFields {
 public:
  PeriodFields(const TableBase& table, const std::string& prefix)
      : month_(table.Field(prefix + "MO")),
        day_(table.Field(prefix + "DA")),
        year_(table.Field(prefix + "YR")) {}
  std::int32_t Key(const Fields& fields) const {
    return MakeKey(fields.Number(year_), fields.Number(month_), fields.Number(day_));
  }

 private:
  FieldHandle month_, day_, year_;
};

// Calls `visit` on every live record, in record order.
void ForEachLive(TableBase& table, const std::function<void()>& visit) {
  for (bool on = table.Top(""); on; on = table.Skip()) {
    if (!table.Data().IsRecordDeleted(table.Handle())) visit();
  }
}

bool IsReturned(std::string_view status) {
  return status == "V" || status == "S";
}

void AddChecks(CheckTable& table, std::int32_t reconciled, BankOverview* overview) {
  const Fields fields(table);
  const FieldHandle amount_field = table.Field("CHXAMOUNT");
  const FieldHandle status_field = table.Field("CHXSTATUS");
  const PeriodFields accounting(table, "CHXACCT");
  const PeriodFields statement(table, "CHXSTMT");
  ForEachLive(table, [&] {
    const Currency amount = fields.Amount(amount_field);
    const std::string status = fields.Text(status_field);
    if (accounting.Key(fields) > reconciled) overview->book_balance -= amount;
    if (IsReturned(status)) {
      // One without a statement period has come back too; one of a reconciled period is in that balance
      // already.
      const std::int32_t returned = statement.Key(fields);
      if (returned == 0 || returned > reconciled) overview->book_balance += amount;
    } else if (status != "C") {
      overview->outstanding_checks.Add(amount);
    }
  });
}

void AddWires(WireTable& table, std::int32_t reconciled, BankOverview* overview) {
  const Fields fields(table);
  const FieldHandle amount_field = table.Field("WIREAMOUNT");
  const PeriodFields accounting(table, "WIREACCT");
  ForEachLive(table, [&] {
    if (accounting.Key(fields) > reconciled) overview->book_balance -= fields.Amount(amount_field);
  });
}

void AddDeposits(DepositTable& table, std::int32_t reconciled, BankOverview* overview) {
  const Fields fields(table);
  const PeriodFields accounting(table, "DEPOACCT");
  std::array<FieldHandle, kDepositItems> amounts{};
  std::array<FieldHandle, kDepositItems> statuses{};
  for (std::size_t i = 0; i < amounts.size(); ++i) {
    amounts[i] = table.Field("DEPOAMT" + std::to_string(i + 1));
    statuses[i] = table.Field("DEPOSTAT" + std::to_string(i + 1));
  }
  ForEachLive(table, [&] {
    const bool later = accounting.Key(fields) > reconciled;
    for (std::size_t i = 0; i < amounts.size(); ++i) {
      const std::string status = fields.Text(statuses[i]);
      if (status.empty()) continue;
      const Currency amount = fields.Amount(amounts[i]);
      if (later) overview->book_balance += amount;
      if (status == "O") overview->outstanding_deposits.Add(amount);
    }
  });
}

LatestPosting PostingOf(const CheckRecord& check) {
  return {check.dated,
          "Check",
          check.number,
          check.file_number,
          check.payee,
          check.amount,
          CheckStatusText(check.status),
          StatusStyle(check.status)};
}

LatestPosting PostingOf(const WireRecord& wire) {
  return {wire.dated,
          "Wire",
          wire.number,
          wire.file_number,
          wire.payee,
          wire.amount,
          WireStatusText(wire.status),
          StatusStyle(wire.status)};
}

LatestPosting PostingOf(const VoucherRecord& voucher) {
  return {voucher.dated,
          "Voucher",
          voucher.number,
          voucher.file_number,
          voucher.payee,
          voucher.amount,
          voucher.status == "C" ? "Cleared" : "Outstanding",
          StatusStyle(voucher.status)};
}

LatestPosting PostingOf(const DepositRecord& deposit) {
  LatestPosting posting;
  posting.kind = "Deposit";
  posting.dated = ParseStoredDate(deposit.dated).value_or(Date{});
  posting.number = deposit.sequence;
  bool outstanding = false;
  std::vector<std::string> files;
  for (const DepositItem& item : deposit.items) {
    if (item.status.empty()) continue;
    if (posting.payee.empty()) posting.payee = item.source;
    posting.amount += item.amount;
    outstanding = outstanding || item.status == "O";
    if (std::find(files.begin(), files.end(), item.file_number) == files.end())
      files.push_back(item.file_number);
  }
  posting.file_number = files.size() == 1 ? files.front() : std::to_string(files.size()) + " files";
  posting.status = outstanding ? "Outstanding" : "Cleared";
  posting.style = outstanding ? "" : "cleared";
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

BankOverview ReadBankOverview(Session& session) {
  BankOverview overview;
  const std::optional<BankRecord> bank = session.Company().banks.Find(session.BankCode());
  BankTables tables(session.Home());
  if (!bank || !tables.Open(bank->code)) return overview;
  const std::int32_t reconciled = MakeKey(bank->reconciled);
  overview.book_balance = bank->beginning_balance;
  AddChecks(tables.checks, reconciled, &overview);
  AddWires(tables.wires, reconciled, &overview);
  AddDeposits(tables.deposits, reconciled, &overview);

  AddLatest(tables.checks, &overview.latest);
  AddLatest(tables.deposits, &overview.latest);
  AddLatest(tables.wires, &overview.latest);
  AddLatest(tables.vouchers, &overview.latest);
  std::stable_sort(
      overview.latest.begin(), overview.latest.end(),
      [](const LatestPosting& left, const LatestPosting& right) { return left.dated > right.dated; });
  if (overview.latest.size() > kLatestRows) overview.latest.resize(kLatestRows);
  return overview;
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
