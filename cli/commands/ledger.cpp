// ledger: the figures of a file's ledger, and its report.
#include "cli/commands/command.h"
#include "cli/json_values.h"
#include "cli/report_files.h"
#include "posting/entry_problems.h"
#include "reports/file_ledger.h"
#include "reports/ledger_reader.h"
#include "reports/ledger_report.h"
#include "reports/report_origin.h"

namespace tallwick::cli {

namespace {

struct LedgerArguments {
  std::string file_number;
  ReportPaths paths;
};

Json BankJson(const BankLedger& bank) {
  return {{"bank", bank.Code()},
          {"totalChecks", MoneyText(bank.TotalChecks())},
          {"totalChecksCount", bank.TotalChecksCount()},
          {"voidChecks", MoneyText(bank.VoidChecks())},
          {"voidChecksCount", bank.VoidChecksCount()},
          {"netChecks", MoneyText(bank.NetChecks())},
          {"totalWires", MoneyText(bank.TotalWires())},
          {"totalWiresCount", bank.TotalWiresCount()},
          {"netDisbursements", MoneyText(bank.NetDisbursements())},
          {"totalDeposits", MoneyText(bank.TotalDeposits())},
          {"totalDepositsCount", bank.TotalDepositsCount()},
          {"bankBalance", MoneyText(bank.BankBalance())},
          {"totalVouchers", MoneyText(bank.TotalVouchers())},
          {"adjustedBalance", MoneyText(bank.AdjustedBalance())}};
}

std::string BankTextTable(const BankLedger& bank) {
  return TextTable(
      {bank.Name() + " (" + bank.Code() + ")", "Amount"}, "<>",
      {{CountedCaption("Total Checks", bank.TotalChecksCount()), AmountText(bank.TotalChecks())},
       {CountedCaption("less Void Checks", bank.VoidChecksCount()), AmountText(bank.VoidChecks())},
       {"Net Checks", AmountText(bank.NetChecks())},
       {CountedCaption("Total Wire Transfers", bank.TotalWiresCount()), AmountText(bank.TotalWires())},
       {"Net Disbursements", AmountText(bank.NetDisbursements())},
       {CountedCaption("Total Deposits", bank.TotalDepositsCount()), AmountText(bank.TotalDeposits())},
       {"Bank Balance", AmountText(bank.BankBalance())},
       {"Total Vouchers", AmountText(bank.TotalVouchers())},
       {"Adjusted Balance", AmountText(bank.AdjustedBalance())}});
}

int Ledger(Office& office, const LedgerArguments& arguments) {
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  const LedgerReading reading = ReadFileLedger(*session, arguments.file_number);
  Output& out = office.Out();
  if (!reading.complete) {
    out.Fail(reading.message);
    return kNoTables;
  }
  const FileLedger& ledger = reading.ledger;
  if (ledger.FileNumber().empty()) return office.Refuse(reading.message);
  out.Set("file", ledger.FileNumber());
  Json banks = Json::array();
  for (const BankLedger& bank : ledger.Banks()) banks.push_back(BankJson(bank));
  out.Set("banks", banks);
  out.Set("fileBalance", MoneyText(ledger.FileBalance()));
  out.Set("vouchered", MoneyText(ledger.Vouchered()));
  out.Set("condition", ledger.Condition());
  out.Set("multipleBanks", ledger.MultipleBanks());
  if (!reading.message.empty()) {
    out.Set("message", reading.message);
    out.Line(reading.message);
    return SaveReport(office, MakeLedgerReport(reading, OriginOf(*session)), arguments.paths);
  }
  for (const BankLedger& bank : ledger.Banks()) out.Line(BankTextTable(bank) + "\n");
  out.Line(TextTable({"File Balance", "Escrow Condition", "Multiple Banks"}, "><<",
                     {{AmountText(ledger.FileBalance()), std::string(ledger.Condition()),
                       std::string(ledger.MultipleBanks())}}));
  return SaveReport(office, MakeLedgerReport(reading, OriginOf(*session)), arguments.paths);
}

}  // namespace

void AddLedgerCommand(CLI::App& app, Action& chosen) {
  auto arguments = std::make_shared<LedgerArguments>();
  CLI::App* ledger = app.add_subcommand("ledger", "The ledger of an escrow file");
  ledger->add_option("FILENO", arguments->file_number)->required();
  AddReportOptions(ledger, arguments->paths);
  Choose(ledger, chosen, arguments, Ledger);
}

}  // namespace tallwick::cli
