// verify and mend: the whole company, table by table and reference by reference, whatever state it is in.
#include "cli/commands/command.h"
#include "cli/problems.h"
#include "maintenance/mend_company.h"
#include "maintenance/verify_company.h"
#include "shell/rights.h"

namespace tallwick::cli {

namespace {

int Verify(Office& office) {
  if (!office.Granted(kRightEscrowOffice)) return office.Status();
  const std::optional<TableHome> home = office.Tables();
  if (!home) return office.Status();
  const std::vector<CompanyProblem> problems = VerifyCompany(*home);
  // Taken meanwhile: tables that did not open have no problem.
  if (!problems.empty() && !office.MayEnter(home->folder)) return office.Status();
  return ReportProblems(problems, office.Out());
}

struct MendArguments {
  bool dry_run = false;
};

int Mend(Office& office, const MendArguments& arguments) {
  if (!office.Granted(kRightEscrowOffice)) return office.Status();
  const std::optional<TableHome> home = office.Tables();
  if (!home) return office.Status();
  Output& out = office.Out();
  const MendReport report = arguments.dry_run ? PlanMending(*home) : MendCompany(*home);
  if (!report.refusal.empty()) return office.Refuse(report.refusal);
  out.Set("dryRun", arguments.dry_run);
  if (!report.steps.empty()) out.Line(arguments.dry_run ? "To be done:" : "Done:");
  out.StartList("steps");
  for (const MendStep& step : report.steps)
    out.Item({{"table", step.table}, {"record", step.record}, {"step", step.text}},
             "  " + Place(step.table, step.record) + ": " + step.text);
  out.EndList();
  if (report.incomplete) out.Line("What rests on these can be judged only then: verify again afterwards");
  if (!report.remains.empty()) out.Line("Left as it is:");
  std::string_view none = report.steps.empty() ? "No problems found" : "No other problems found";
  if (report.incomplete) none = "No other problems found so far";
  return ReportProblems(report.remains, out, none);
}

}  // namespace

void AddVerifyCommand(CLI::App& app, Action& chosen) {
  Choose(app.add_subcommand("verify", "The whole company: journal, tags, cross-references, counters"), chosen,
         Verify);
  auto arguments = std::make_shared<MendArguments>();
  CLI::App* mend =
      app.add_subcommand("mend", "Rebuilds what verify found and the tables themselves can tell");
  mend->add_flag("--dry-run", arguments->dry_run, "Only say what would be done");
  Choose(mend, chosen, arguments, Mend);
}

}  // namespace tallwick::cli
