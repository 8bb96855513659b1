#include "maintenance/verify_statuses.h"

#include <array>

#include "core/encoding.h"
#include "core/text.h"
#include "tables/record_pass.h"

namespace tallwick {
namespace {

constexpr std::int64_t kMostNamed = 100;

// Takes the problems of one table.
class Findings {
 public:
  Findings(const TableBase& table, std::vector<CompanyProblem>* problems)
      : table_(table), problems_(*problems) {}
  ~Findings() {
    if (found_ > kMostNamed)
      problems_.push_back(
          {table_.Name(), 0, std::to_string(found_ - kMostNamed) + " more statuses are not as they can be"});
  }
  Findings(const Findings&) = delete;
  Findings& operator=(const Findings&) = delete;

  // `known`: the statuses that there are, for the person who corrects it.
  void AddUnknown(std::int32_t record, const std::string& field, std::string_view stored,
                  std::string_view known) {
    Add(record, field + " holds the status " + Quoted(FromWindows1252(TrimRight(stored))) +
                    ", which is none of " + std::string(known) + Advice(record, field));
  }
  void AddNoStatement(std::int32_t record, std::string_view status) {
    Add(record, "CHXSTATUS is " + Quoted(status) + ", but no statement period says since when" +
                    Advice(record, "CHXSTMTMO, CHXSTMTDA and CHXSTMTYR"));
  }

 private:
  void Add(std::int32_t record, std::string text) {
    if (++found_ <= kMostNamed) problems_.push_back({table_.Name(), record, std::move(text)});
  }
  std::string Advice(std::int32_t record, const std::string& fields) const {
    return ": compare the record with the paper and the bank's statement, and correct " + fields +
           " with \"escrowctl table set " + table_.Name() + " " + std::to_string(record) + "\"";
  }

  const TableBase& table_;
  std::vector<CompanyProblem>& problems_;
  std::int64_t found_ = 0;
};

// A void or stop of a reconciled period is in no figure any more.
void VerifyChecks(TableBase& checks, const Period& reconciled, std::vector<CompanyProblem>* problems) {
  Findings findings(checks, problems);
  PackedFields fields(checks);
  const PackedField status = fields.Find("CHXSTATUS", 'C');
  const PackedPeriod accounting = fields.FindPeriod("CHXACCT");
  const PackedPeriod statement = fields.FindPeriod("CHXSTMT");
  const auto closed_through = reconciled.IsEmpty() ? 0 : MakeKey(reconciled);
  PassOver(checks, fields, checks.Name(), {}, [&](RecordView record, std::int32_t number) {
    const char letter = StatusIn(status.Text(record));
    if (std::string_view("HOCVS").find(letter) == std::string_view::npos) {
      findings.AddUnknown(number, "CHXSTATUS", status.Text(record), "H, O, C, V and S");
    } else if ((letter == 'V' || letter == 'S') && PeriodIn(record, statement).IsEmpty() &&
               MakeKey(PeriodIn(record, accounting)) > closed_through) {
      findings.AddNoStatement(number, {&letter, 1});
    }
  });
}

// Other programs leave the status of a wire blank, which counts as cleared.
void VerifyWires(TableBase& wires, std::vector<CompanyProblem>* problems) {
  Findings findings(wires, problems);
  PackedFields fields(wires);
  const PackedField status = fields.Find("WIRESTATUS", 'C');
  PassOver(wires, fields, wires.Name(), {}, [&](RecordView record, std::int32_t number) {
    if (std::string_view("OC ").find(StatusIn(status.Text(record))) == std::string_view::npos)
      findings.AddUnknown(number, "WIRESTATUS", status.Text(record), "O and C");
  });
}

void VerifyDeposits(TableBase& deposits, std::vector<CompanyProblem>* problems) {
  struct Line {
    std::string name;  // of the status
    PackedField amount, status;
  };
  Findings findings(deposits, problems);
  PackedFields fields(deposits);
  std::array<Line, kDepositItems> lines;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string item = std::to_string(i + 1);
    lines[i] = {"DEPOSTAT" + item, fields.Find("DEPOAMT" + item, 'N'), fields.Find("DEPOSTAT" + item, 'C')};
  }
  PassOver(deposits, fields, deposits.Name(), {}, [&](RecordView record, std::int32_t number) {
    for (const Line& line : lines) {
      const char letter = StatusIn(line.status.Text(record));
      if (letter == 'O' || letter == 'C' || MoneyIn(line.amount.Text(record)).IsZero()) continue;
      findings.AddUnknown(number, line.name, line.status.Text(record), "O and C");
    }
  });
}

}  // namespace

void VerifyStatuses(BankTables& bank, const Period& reconciled, std::vector<CompanyProblem>* problems) {
  if (bank.checks.IsOpen()) VerifyChecks(bank.checks, reconciled, problems);
  if (bank.deposits.IsOpen()) VerifyDeposits(bank.deposits, problems);
  if (bank.wires.IsOpen()) VerifyWires(bank.wires, problems);
}

}  // namespace tallwick
