#include "recon/recon_report.h"

#include "core/text_format.h"
#include "reports/file_standings.h"

namespace tallwick {
namespace {

constexpr std::string_view kSides = ">+2880|>+2520|>+2880|>+2520";
constexpr std::string_view kLines = "<+5400|>+2520";
constexpr std::string_view kFiles = "<+2880|>+2520|<+360|<+2880";
constexpr std::string_view kClearedFormat = "#,###,###,###.00";
constexpr std::string_view kChargesNote =
    "If Bank Charges and/or Credits have ever been used to "
    "reconcile this account the Escrow Analysis reports may "
    "not match this report.";

std::string Count(std::int64_t count) {
  return FormatNumber(static_cast<long long>(count), "###,##0");
}

void AddSides(const ReconReport& facts, ReportDocument& report) {
  const ReconEntries& entries = facts.entries;
  const ReconResults& results = facts.results;
  ReportTable& table = report.AddTable("|Bank Statement||Check Book", kSides);
  const auto amount = ReportAmount;
  table.Add({"Ending Balance from Statement", amount(entries.statement_balance),
             "Beginning Check Book Balance", amount(entries.beginning_balance)});
  table.Add({"plus Outstanding Deposits", amount(results.outstanding_deposits), "plus Deposits",
             amount(results.deposits)});
  table.Add({"less Outstanding Checks", amount(results.outstanding_checks), "plus Voided Checks",
             amount(results.voided_checks)});
  table.Add({"less Outstanding Wire Transfers", amount(results.outstanding_wires), "", ""});
  table.Add({"Adjustments in Transit", amount(entries.adjustments), "less Disbursements",
             amount(results.disbursements)});
  table.Add({"", "", "plus Bank Credits", amount(entries.credits)});
  table.Add({"", "", "less Bank Charges", amount(entries.charges)});
  table.AddSubtotal({"Adjusted Statement Balance", amount(results.adjusted_balance),
                     "Ending Check Book Balance", amount(results.ending_balance)});
  table.AddSubtotal({"", "", "Difference of", amount(results.difference)});
}

void AddCleared(const ReconReport& facts, ReportDocument& report) {
  const ReconResults& results = facts.results;
  ReportTable& table = report.AddTable("Cleared on this Statement|Amount", kLines);
  const auto amount = [](Currency sum) { return FormatNumber(sum, kClearedFormat); };
  table.Add({Count(results.cleared_check_count) + " Cleared Checks", amount(results.cleared_checks)});
  table.Add({Count(results.cleared_wire_count) + " Cleared Wire Transfers", amount(results.cleared_wires)});
  table.AddSubtotal({"Cleared Disbursements Total", amount(results.cleared_checks + results.cleared_wires)});
  table.AddSubtotal({"Cleared Deposits", amount(results.cleared_deposits)});
}

void AddProof(const ReconReport& facts, ReportDocument& report) {
  const ReconResults& results = facts.results;
  ReportTable& table = report.AddTable("Three-Way Proof|Amount", kLines);
  table.Add({"Adjusted Statement Balance", ReportAmount(results.adjusted_balance)});
  table.Add({"Ending Check Book Balance", ReportAmount(results.ending_balance)});
  table.Add({"Sum of File Ledgers", ReportAmount(facts.file_total)});
  report.AddText(ProofText(results, facts.file_total), ReportRow::Kind::kSubtotal);
}

void AddFiles(const ReconReport& facts, ReportDocument& report) {
  ReportTable& table = report.AddTable("File|Balance||Escrow Condition", kFiles, "Files with a Balance");
  for (const FileBalance& file : facts.files) {
    table.Add({ShownFileNumber(file.file_number), ReportAmount(file.balance), "",
               std::string(ConditionOfBalance(file.balance))});
  }
  const std::size_t files = facts.files.size();
  table.AddSubtotal({Count(static_cast<std::int64_t>(files)) + (files == 1 ? " file" : " files"),
                     ReportAmount(facts.file_total), "", ""});
}

}  // namespace

std::string ProofText(const ReconResults& results, Currency file_total) {
  const Currency files = (results.ending_balance - file_total).Abs();
  const std::string book = "check book balance and the sum of all file ledgers ";
  if (results.IsBalanced() && files.IsZero()) return "Adjusted statement balance, " + book + "agree.";
  const std::string ledgers =
      "The " + book + (files.IsZero() ? std::string("agree.") : "differ by " + ReportAmount(files) + ".");
  if (results.IsBalanced()) return ledgers;
  return "The adjusted statement balance and the check book balance differ by " +
         ReportAmount(results.difference) + ".  " + ledgers;
}

ReportDocument MakeReconReport(const ReconReport& facts) {
  ReportDocument report;
  report.group = "Escrow Reports";
  report.title = "Bank Statement Reconciliation for " + facts.bank_name;
  report.name = "Bank Statement Reconciliation " + facts.bank_code + " " + ShortForm(facts.statement);
  report.origin = facts.origin;
  report.AddText(
      "Statement Reconciliation for " + LongForm(facts.statement) + ", Account No. " + facts.account_number,
      ReportRow::Kind::kSubtotal);
  report.AddText(facts.last.IsEmpty() ? std::string("This is the first reconciliation.")
                                      : "Last Reconciliation was " + LongForm(facts.last));
  AddSides(facts, report);
  AddCleared(facts, report);
  AddProof(facts, report);
  if (facts.charges_note) report.AddText(kChargesNote, ReportRow::Kind::kRemark);
  AddFiles(facts, report);
  return report;
}

}  // namespace tallwick
