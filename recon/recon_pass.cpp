#include "recon/recon_pass.h"

#include <algorithm>
#include <array>

namespace tallwick {
namespace {

constexpr std::int64_t kMostRoom = 8'000'000;  // entries, 128 MB of addresses

// Counts an item and keeps it where it is part of a figure.
ReconPlace Count(ReconFindings& findings, const ReconItem& item, std::int32_t record, int deposit_item = 0) {
  const ReconPlace place = findings.recon.Add(item);
  if (const std::uint8_t figures = FiguresOf(place); figures != 0) {
    findings.entries.push_back(
        {record, item.kind, static_cast<std::uint8_t>(deposit_item), figures, item.amount});
  }
  return place;
}

// What the records of one table add to the findings.
class RecordReader {
 public:
  RecordReader(TableBase& table, std::string_view what)
      : table_(table), fields_(table), amounts_(table), what_(what) {}
  TableBase& Table() { return table_; }
  std::string_view What() const { return what_; }
  PackedFields& Fields() { return fields_; }
  AmountsOfPass& Amounts() { return amounts_; }

 private:
  TableBase& table_;
  PackedFields fields_;
  AmountsOfPass amounts_;
  std::string_view what_;
};

// Checks and wires.
class PaymentReader : public RecordReader {
 public:
  PaymentReader(TableBase& table, std::string_view what, ReconKind kind, const std::string& prefix)
      : RecordReader(table, what),
        kind_(kind),
        amount_(Fields().Find(prefix + "AMOUNT", 'N')),
        status_(Fields().Find(prefix + "STATUS", 'C')),
        file_(Fields().Find(prefix + "FILENO", 'C')),
        accounting_(Fields().FindPeriod(prefix + "ACCT")),
        statement_(Fields().FindPeriod(prefix + "STMT")) {}

  void Read(RecordView record, std::int32_t number, ReconFindings& findings) {
    const ReconItem item{kind_, StatusIn(status_.Text(record)), Amounts().In(amount_, record, number),
                         MakeKey(PeriodIn(record, accounting_)), PeriodIn(record, statement_)};
    const ReconBucket bucket = Count(findings, item, number).bucket;
    const bool paid = bucket == kReconOutstanding || bucket == kReconCleared;
    if (paid) findings.files.Add(file_.Text(record), -item.amount);
  }

 private:
  const ReconKind kind_;
  const PackedField amount_, status_, file_;
  const PackedPeriod accounting_, statement_;
};

class DepositReader : public RecordReader {
 public:
  explicit DepositReader(TableBase& table)
      : RecordReader(table, "Deposits"), accounting_(Fields().FindPeriod("DEPOACCT")) {
    for (std::size_t i = 0; i < items_.size(); ++i) {
      const std::string number = std::to_string(i + 1);
      items_[i] = {Fields().Find("DEPOFILE" + number, 'C'), Fields().Find("DEPOAMT" + number, 'N'),
                   Fields().Find("DEPOSTAT" + number, 'C'), Fields().FindPeriod("DEPOST", number)};
    }
  }

  void Read(RecordView record, std::int32_t number, ReconFindings& findings) {
    const std::int32_t accounting_key = MakeKey(PeriodIn(record, accounting_));
    if (accounting_key > MakeKey(findings.recon.Terms().statement)) return;
    for (std::size_t i = 0; i < items_.size(); ++i) {
      const Item& place = items_[i];
      const char status = StatusIn(place.status.Text(record));
      const std::string_view file = place.file.Text(record);
      const bool has_file = !IsBlank(file);
      if (status == ' ' && !has_file) continue;
      const ReconItem item{ReconKind::kDeposit, status, Amounts().In(place.amount, record, number),
                           accounting_key, PeriodIn(record, place.statement)};
      const ReconBucket bucket = Count(findings, item, number, static_cast<int>(i) + 1).bucket;
      // A file's ledger holds the item whatever its status is.
      if (has_file || bucket != kReconNone) findings.files.Add(file, item.amount);
    }
  }

 private:
  struct Item {
    PackedField file, amount, status;
    PackedPeriod statement;
  };
  const PackedPeriod accounting_;
  std::array<Item, kDepositItems> items_;
};

template <class Reader>
PassEnd RunPass(Reader& reader, const PassProgress& progress, ReconFindings& findings) {
  return reader.Amounts().End(PassOver(reader.Table(), reader.Fields(), reader.What(), progress,
                                       [&](RecordView record, std::int32_t number) {
                                         ++findings.records;
                                         reader.Read(record, number, findings);
                                       }));
}

// The most that there can be. Room that is not used costs nothing; growing would cost copies.
std::size_t MostEntries(const BankTables& tables) {
  const std::int64_t most = std::int64_t{tables.checks.RecordCount()} + tables.wires.RecordCount() +
                            std::int64_t{tables.deposits.RecordCount()} * kDepositItems;
  return static_cast<std::size_t>(std::clamp<std::int64_t>(most, 0, kMostRoom));
}

}  // namespace

PassEnd RunReconPasses(BankTables& tables, const PassProgress& progress, ReconFindings& findings) {
  findings.entries.reserve(MostEntries(tables));
  PaymentReader checks(tables.checks, "Checks", ReconKind::kCheck, "CHX");
  PaymentReader wires(tables.wires, "Wire Transfers", ReconKind::kWire, "WIRE");
  DepositReader deposits(tables.deposits);
  PassEnd end = RunPass(checks, progress, findings);
  if (end == PassEnd::kDone) end = RunPass(wires, progress, findings);
  if (end == PassEnd::kDone) end = RunPass(deposits, progress, findings);
  return end;
}

}  // namespace tallwick
