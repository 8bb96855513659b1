#include "reports/file_standings.h"

#include <algorithm>
#include <array>

#include "core/encoding.h"
#include "core/text.h"

namespace tallwick {
namespace {

// "CCYYMMDD" as a number; 0 for anything else.
std::int32_t DayIn(std::string_view field) {
  std::int32_t day = 0;
  for (const char digit : field) {
    if (!IsDigit(digit)) return 0;
    day = day * 10 + (digit - '0');
  }
  return day;
}

Date DateOf(std::int32_t day) {
  const Date date{day / 10000, day / 100 % 100, day % 100};
  return IsValidDate(date) ? date : Date();
}

std::int32_t KeyIn(RecordView record, const PackedPeriod& place) {
  return MakeKey(PeriodIn(record, place));
}

// One pass: checks, or wires, or deposits.
struct Pass {
  std::int32_t as_of;
  const PassProgress& progress;
  FileStandings& standings;

  bool IsLater(std::int32_t key) const { return as_of != 0 && key > as_of; }
};

PassEnd PassChecks(CheckTable& table, const Pass& pass) {
  PackedFields fields(table);
  AmountsOfPass amounts(table);
  const PackedField amount = fields.Find("CHXAMOUNT", 'N');
  const PackedField status = fields.Find("CHXSTATUS", 'C');
  const PackedField file = fields.Find("CHXFILENO", 'C');
  const PackedField dated = fields.Find("CHXDATED", 'D');
  const PackedPeriod accounting = fields.FindPeriod("CHXACCT");
  const PackedPeriod statement = fields.FindPeriod("CHXSTMT");
  return amounts.End(
      PassOver(table, fields, "Checks", pass.progress, [&](RecordView record, std::int32_t number) {
        if (pass.as_of != 0 && pass.IsLater(KeyIn(record, accounting))) return;
        const char letter = StatusIn(status.Text(record));
        const bool returned = letter == 'V' || letter == 'S';
        const bool counts = !returned || pass.IsLater(KeyIn(record, statement));
        pass.standings.Pay(file.Text(record), counts ? amounts.In(amount, record, number) : Currency(),
                           DayIn(dated.Text(record)));
      }));
}

PassEnd PassWires(WireTable& table, const Pass& pass) {
  PackedFields fields(table);
  AmountsOfPass amounts(table);
  const PackedField amount = fields.Find("WIREAMOUNT", 'N');
  const PackedField file = fields.Find("WIREFILENO", 'C');
  const PackedField dated = fields.Find("WIREDATED", 'D');
  const PackedPeriod accounting = fields.FindPeriod("WIREACCT");
  return amounts.End(
      PassOver(table, fields, "Wire Transfers", pass.progress, [&](RecordView record, std::int32_t number) {
        if (pass.as_of != 0 && pass.IsLater(KeyIn(record, accounting))) return;
        pass.standings.Pay(file.Text(record), amounts.In(amount, record, number), DayIn(dated.Text(record)));
      }));
}

PassEnd PassDeposits(DepositTable& table, const Pass& pass) {
  struct Item {
    PackedField file, amount, status;
  };
  PackedFields fields(table);
  AmountsOfPass amounts(table);
  const PackedField dated = fields.Find("DEPODATED", 'C');
  const PackedPeriod accounting = fields.FindPeriod("DEPOACCT");
  std::array<Item, kDepositItems> items;
  for (std::size_t i = 0; i < items.size(); ++i) {
    const std::string item = std::to_string(i + 1);
    items[i] = {fields.Find("DEPOFILE" + item, 'C'), fields.Find("DEPOAMT" + item, 'N'),
                fields.Find("DEPOSTAT" + item, 'C')};
  }
  return amounts.End(
      PassOver(table, fields, "Deposits", pass.progress, [&](RecordView record, std::int32_t number) {
        if (pass.as_of != 0 && pass.IsLater(KeyIn(record, accounting))) return;
        const std::int32_t day = DayIn(dated.Text(record));
        for (const Item& item : items) {
          const std::string_view file = item.file.Text(record);
          if (IsBlank(file) && IsBlank(item.status.Text(record))) continue;
          pass.standings.Receive(file, amounts.In(item.amount, record, number), day);
        }
      }));
}

}  // namespace

std::string_view FileStanding::Condition() const {
  return ConditionOfBalance(Balance());
}

std::string ShownFileNumber(std::string_view file_number) {
  return std::string(file_number.empty() ? "(no file)" : file_number);
}

std::string_view ConditionOfBalance(Currency balance) {
  if (balance.IsZero()) return "Balanced";
  return balance < Currency() ? "Over Drawn" : "Funds Available";
}

FileStandings::Sums& FileStandings::Sums::operator+=(const Sums& more) {
  receipts += more.receipts;
  disbursements += more.disbursements;
  day = std::max(day, more.day);
  return *this;
}

void FileStandings::Receive(std::string_view file_number, Currency amount, std::int32_t day) {
  files_.Add(file_number, {amount, {}, day});
}

void FileStandings::Pay(std::string_view file_number, Currency amount, std::int32_t day) {
  files_.Add(file_number, {{}, amount, day});
}

std::vector<FileStanding> FileStandings::InOrder() const {
  std::vector<FileStanding> standings;
  for (const auto& [number, sums] : files_.ByFile())
    standings.push_back({FromWindows1252(number), sums.receipts, sums.disbursements, DateOf(sums.day)});
  return standings;
}

PassEnd ReadStandings(BankTables& tables, std::int32_t as_of, const PassProgress& progress,
                      FileStandings& standings) {
  const Pass pass{as_of, progress, standings};
  PassEnd end = PassChecks(tables.checks, pass);
  if (end == PassEnd::kDone) end = PassWires(tables.wires, pass);
  if (end == PassEnd::kDone) end = PassDeposits(tables.deposits, pass);
  return end;
}

}  // namespace tallwick
