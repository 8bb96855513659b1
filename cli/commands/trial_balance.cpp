// trial-balance: what every escrow file received, paid and holds, and the lists cut from it.
#include "reports/trial_balance.h"
#include "cli/commands/command.h"
#include "cli/json_values.h"
#include "cli/report_files.h"
#include "core/text.h"
#include "reports/report_origin.h"

namespace tallwick::cli {

namespace {

struct TrialArguments {
  std::string as_of;
  std::string kind = "all";
  int days = kDormantDays;
  ReportPaths paths;
};

Json FileJson(const TrialFile& file) {
  Json json{{"file", file.file_number},
            {"receipts", MoneyText(file.receipts)},
            {"disbursements", MoneyText(file.disbursements)},
            {"balance", MoneyText(file.Balance())},
            {"condition", file.Condition()},
            {"lastActivity", IsoDate(file.last_activity)}};
  if (!file.bank_code.empty()) json["bank"] = file.bank_code;
  return json;
}

std::string FileLine(const std::vector<std::string>& cells) {
  std::string line = PadRight(cells[0], 16);
  for (std::size_t amount = 1; amount <= 3; ++amount) line += " " + PadLeft(cells[amount], 17);
  line += "  " + PadRight(cells[4], 18);
  return cells.size() == 6 ? line + cells[5] : line + PadRight(cells[5], 15) + cells[6];
}

void Print(Output& out, const TrialBalance& balance, const TrialTerms& terms, const std::string& kind) {
  out.Set("asOf", IsoDate(terms.as_of));
  out.Set("kind", kind);
  out.Set("banks", balance.banks);
  if (!balance.note.empty()) {
    out.Set("note", balance.note);
    out.Line(balance.note);
  }
  if (!balance.month_note.empty()) {
    out.Set("monthNote", balance.month_note);
    out.Line(balance.month_note);
  }
  const bool has_banks = balance.message.empty();
  if (has_banks) out.Line(FileLine(Split(TrialHeadings(terms.kind), '|')));
  out.StartList("files");
  for (const TrialFile& file : balance.files) out.Item(FileJson(file), FileLine(TrialCells(file)));
  out.EndList();
  out.Set("count", balance.files.size());
  out.Set("receipts", MoneyText(balance.receipts));
  out.Set("disbursements", MoneyText(balance.disbursements));
  out.Set("balance", MoneyText(balance.Balance()));
  const TrialFile total{{"TOTAL", balance.receipts, balance.disbursements, {}}, {}, {}};
  if (has_banks) out.Line(FileLine(TrialCells(total)));
}

int TrialBalanceOf(Office& office, const TrialArguments& arguments) {
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  TrialTerms terms;
  terms.bank_code = office.Options().bank;
  terms.as_of = ParseIsoDate(arguments.as_of).value_or(Date());
  terms.kind = *TrialKindOf(arguments.kind);
  terms.dormant_days = arguments.days;
  const TrialBalance balance = ReadTrialBalance(*session, terms, {});
  Output& out = office.Out();
  if (balance.end != PassEnd::kDone || (!terms.bank_code.empty() && balance.banks.empty())) {
    out.Fail(balance.message);
    return balance.end == PassEnd::kStopped ? kRefused : kNoTables;
  }
  Print(out, balance, terms, arguments.kind);
  if (!balance.message.empty()) {
    out.Set("message", balance.message);
    out.Line(balance.message);
  }
  return SaveReport(office, MakeTrialReport(balance, terms, OriginOf(*session)), arguments.paths);
}

std::string ReadableDate(const std::string& text) {
  return ParseIsoDate(text) ? "" : "the date is not valid";
}

}  // namespace

void AddTrialBalanceCommand(CLI::App& app, Action& chosen) {
  auto arguments = std::make_shared<TrialArguments>();
  CLI::App* trial = app.add_subcommand(
      "trial-balance", "What every escrow file received, paid and holds, in --bank or in all banks");
  trial->add_option("--as-of", arguments->as_of, "Leave out items posted after this day YYYY-MM-DD")
      ->check(CLI::Validator(ReadableDate, "YYYY-MM-DD"));
  trial->add_option("--kind", arguments->kind, "all, open, overdrawn or dormant (all unless said)")
      ->check(CLI::IsMember({"all", "open", "overdrawn", "dormant"}));
  trial
      ->add_option(
          "--days", arguments->days,
          "Days without activity that make a file dormant (" + std::to_string(kDormantDays) + " unless said)")
      ->check(CLI::Range(1, 36500));
  AddReportOptions(trial, arguments->paths);
  Choose(trial, chosen, arguments, TrialBalanceOf);
}

}  // namespace tallwick::cli
