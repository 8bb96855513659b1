// verify: the whole company, table by table and reference by reference.
#include "cli/commands/command.h"
#include "cli/verify/company_verifier.h"

namespace tallwick::cli {

namespace {

int Verify(Office& office) {
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  return ReportProblems(VerifyCompany(*session), office.Out());
}

}  // namespace

void AddVerifyCommand(CLI::App& app, Action& chosen) {
  Choose(app.add_subcommand("verify", "The whole company: tags, cross-references, counters"), chosen, Verify);
}

}  // namespace tallwick::cli
