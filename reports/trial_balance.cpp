#include "reports/trial_balance.h"

#include <algorithm>
#include <iterator>

#include "core/text.h"
#include "core/text_format.h"
#include "shell/bank_select.h"
#include "shell/company_tables.h"
#include "shell/rights.h"

namespace tallwick {
namespace {

// The look of a list, of all banks together or bank by bank.
struct Columns {
  std::string_view headings;
  std::string_view format;
};
constexpr Columns kTogether{"File|Receipts|Disbursements|Balance|Escrow Condition|Last Activity",
                            "<+1720|>+1900|>+1900|>+1900|^+1780|>+1600"};
constexpr Columns kByBank{"File|Receipts|Disbursements|Balance|Escrow Condition|Last Activity|Bank",
                          "<+1400|>+1480|>+1480|>+1480|^+1360|>+1240|<+2360"};

bool IsByBank(TrialKind kind) {
  return kind == TrialKind::kOverdrawn;
}

const Columns& ColumnsOf(TrialKind kind) {
  return IsByBank(kind) ? kByBank : kTogether;
}

struct KindName {
  TrialKind kind;
  std::string_view word;
  std::string_view name;
};
constexpr KindName kKinds[] = {{TrialKind::kAll, "all", "All Files"},
                               {TrialKind::kOpen, "open", "Open Balances"},
                               {TrialKind::kOverdrawn, "overdrawn", "Overdrawn Files"},
                               {TrialKind::kDormant, "dormant", "Dormant Files"}};

TrialBalance Failed(std::string message, PassEnd end) {
  TrialBalance balance;
  balance.message = std::move(message);
  balance.end = end;
  return balance;
}

// An accounting period of such a bank is a month: any day of it takes in the whole.
std::string MonthNote(const Date& as_of) {
  if (as_of.IsEmpty() || !IsValidDate({as_of.year, as_of.month, as_of.day + 1})) return {};
  return "Bank accounts whose periods are months are counted through " + FormatDate(as_of, "mmmm yyyy") + ".";
}

std::string Scope(const TrialBalance& balance, const TrialTerms& terms) {
  std::string text = !terms.bank_code.empty() ? "Bank " + terms.bank_code
                     : balance.note.empty()   ? "All banks"
                                              : "Banks of the user";
  if (IsByBank(terms.kind)) text += ", each bank account by itself";
  text += terms.as_of.IsEmpty() ? ", all items posted" : ", items posted through " + ReportDate(terms.as_of);
  if (terms.kind == TrialKind::kDormant)
    text += ", not active for more than " + std::to_string(terms.dormant_days) + " days";
  return text + ".  " + FileCount(balance) + ".";
}

// Whether a file belongs to the list; dormant files are counted back from `day`.
bool IsOfKind(const FileStanding& file, const TrialTerms& terms, const Date& day) {
  switch (terms.kind) {
    case TrialKind::kOpen:
      return !file.Balance().IsZero();
    case TrialKind::kOverdrawn:
      return file.Balance() < Currency();
    case TrialKind::kDormant:
      return !file.Balance().IsZero() && JulianDay(day) - JulianDay(file.last_activity) > terms.dormant_days;
    case TrialKind::kAll:
      break;
  }
  return true;
}

// Takes the files that belong to the list.
void Take(const FileStandings& standings, const BankRecord* bank, const TrialTerms& terms, const Date& day,
          TrialBalance& balance) {
  for (FileStanding& file : standings.InOrder()) {
    if (!IsOfKind(file, terms, day)) continue;
    balance.receipts += file.receipts;
    balance.disbursements += file.disbursements;
    TrialFile taken{std::move(file), {}, {}};
    if (bank != nullptr) {
      taken.bank_code = Trim(bank->code);
      taken.bank_name = bank->name;
    }
    balance.files.push_back(std::move(taken));
  }
}

void SortByFile(std::vector<TrialFile>& files) {
  std::stable_sort(files.begin(), files.end(), [](const TrialFile& left, const TrialFile& right) {
    return left.file_number < right.file_number;
  });
}

}  // namespace

std::optional<TrialKind> TrialKindOf(std::string_view word) {
  const auto* const found = std::find_if(std::begin(kKinds), std::end(kKinds), [&](const KindName& kind) {
    return EqualsIgnoreCase(kind.word, word);
  });
  if (found == std::end(kKinds)) return std::nullopt;
  return found->kind;
}

std::string_view TrialKindName(TrialKind kind) {
  return kKinds[static_cast<std::size_t>(kind)].name;
}

TrialBalance ReadTrialBalance(Session& session, const TrialTerms& terms, const PassProgress& progress) {
  TrialBalance balance;
  if (!session.MayUse(kRightEscrowReports)) return Failed(std::string(kCommandNotGranted), PassEnd::kStopped);
  if (terms.bank_code.empty()) balance.note = OtherBanksNote(session);
  FileStandings together;
  const Date day = terms.as_of.IsEmpty() ? session.TheClock().Now().date : terms.as_of;
  const std::int32_t as_of = MakeKey(terms.as_of.year, terms.as_of.month, terms.as_of.day);
  for (const BankRecord& bank : UserBanks(session)) {
    const std::string code(Trim(bank.code));
    if (!terms.bank_code.empty() && !EqualsIgnoreCase(code, terms.bank_code)) continue;
    BankTables tables(session.Home());
    if (!tables.Open(code))
      return Failed("The tables of bank " + Quoted(code) + " could not be opened.", PassEnd::kUnreadable);
    FileStandings of_bank;
    FileStandings& standings = IsByBank(terms.kind) ? of_bank : together;
    const PassEnd end = ReadStandings(
        tables, as_of,
        [&](std::string_view what, std::int64_t done, std::int64_t total) {
          return !progress || progress(bank.name + ": " + std::string(what), done, total);
        },
        standings);
    if (end == PassEnd::kStopped) return Failed("Calculations incomplete - stopped by user...", end);
    if (end == PassEnd::kUnreadable)
      return Failed("The tables of bank " + Quoted(code) + " could not be read whole.", end);
    balance.banks.push_back(code);
    if (bank.accounting.day == 0) balance.month_note = MonthNote(terms.as_of);
    Take(of_bank, &bank, terms, day, balance);
  }
  if (balance.banks.empty()) {
    balance.message = terms.bank_code.empty() ? "No banks have been created."
                                              : "There is no bank " + Quoted(terms.bank_code) + ".";
    return balance;
  }
  Take(together, nullptr, terms, day, balance);
  if (IsByBank(terms.kind)) SortByFile(balance.files);
  return balance;
}

std::string FileCount(const TrialBalance& balance) {
  const auto count = static_cast<long long>(balance.files.size());
  return FormatNumber(count, "###,###,##0") + (count == 1 ? " file" : " files");
}

std::string_view TrialHeadings(TrialKind kind) {
  return ColumnsOf(kind).headings;
}

std::vector<std::string> TrialCells(const TrialFile& file) {
  std::vector<std::string> cells{ShownFileNumber(file.file_number), ReportAmount(file.receipts),
                                 ReportAmount(file.disbursements),  ReportAmount(file.Balance()),
                                 std::string(file.Condition()),     ReportDate(file.last_activity)};
  if (!file.bank_code.empty()) cells.push_back(file.bank_name);
  return cells;
}

ReportDocument MakeTrialReport(const TrialBalance& balance, const TrialTerms& terms,
                               const ReportOrigin& origin) {
  ReportDocument report;
  report.group = "ESCROW REPORTS";
  report.title = "Trial Balance - " + std::string(TrialKindName(terms.kind));
  report.name = "Trial Balance " + std::string(TrialKindName(terms.kind)) + " " +
                FormatDate(terms.as_of.IsEmpty() ? origin.when.date : terms.as_of, "yyyy-mm-dd");
  report.origin = origin;
  if (!balance.message.empty()) {
    report.AddText(balance.message);
    return report;
  }
  report.AddText(Scope(balance, terms));
  if (!balance.note.empty()) report.AddText(balance.note);
  if (!balance.month_note.empty()) report.AddText(balance.month_note);
  const Columns& columns = ColumnsOf(terms.kind);
  ReportTable& table = report.AddTable(columns.headings, columns.format);
  table.rows.reserve(balance.files.size() + 1);
  for (const TrialFile& file : balance.files) table.Add(TrialCells(file));
  std::vector<std::string> total{"Total", ReportAmount(balance.receipts), ReportAmount(balance.disbursements),
                                 ReportAmount(balance.Balance())};
  total.resize(Split(columns.headings, '|').size());
  table.AddSubtotal(std::move(total));
  return report;
}

}  // namespace tallwick
