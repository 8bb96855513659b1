// demo: fills an empty data path with a believable company.
#include "cli/commands/command.h"
#include "cli/demo/audit_book.h"
#include "cli/demo/company.h"
#include "cli/demo/writer.h"
#include "shell/company_tables.h"

namespace tallwick::cli {

namespace {

constexpr int kMostFiles = 100'000;

struct DemoArguments {
  int files = 500;
  std::uint64_t seed = 1;
};

int Demo(Office& office, const DemoArguments& arguments) {
  if (!office.MakeDataFolder()) return office.Status();
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  Output& out = office.Out();
  if (session->Company().banks.Top("BANKNAME")) {
    return office.Refuse(
        "The data folder holds a company already; the demo needs an empty one.  Name another --data");
  }
  const DemoCompany company = MakeDemoCompany(arguments.seed, arguments.files, office.TheClock().Now().date);
  DemoCounts counts;
  if (const int code = WriteDemoCompany(*session, company, &counts); code != 0)
    return office.Refuse("The demo company could not be written: " + std::string(engine::error4text(code)));
  int audit_entries = 0;
  if (!WriteDemoAudit(*session, company, &audit_entries))
    return office.Refuse(
        "The audit logs of the demo company could not be written.  Make sure that you may write to the "
        "folder \"Logs\" of the data folder and that there is room, and begin with an empty one");
  const std::pair<const char*, int> kinds[] = {
      {"banks", counts.banks},        {"users", counts.users},       {"files", arguments.files},
      {"checks", counts.checks},      {"deposits", counts.deposits}, {"depositItems", counts.deposit_items},
      {"wires", counts.wires},        {"vouchers", counts.vouchers}, {"notes", counts.notes},
      {"auditEntries", audit_entries}};
  std::vector<std::vector<std::string>> rows;
  for (const auto& [kind, count] : kinds) {
    out.Set(kind, count);
    rows.push_back({kind, std::to_string(count)});
  }
  out.Line(TextTable({"Made", ""}, "<>", rows));
  return kDone;
}

}  // namespace

void AddDemoCommand(CLI::App& app, Action& chosen) {
  auto arguments = std::make_shared<DemoArguments>();
  CLI::App* demo = app.add_subcommand("demo", "Fills an empty data path with a believable company");
  demo->add_option("--files", arguments->files, "Escrow files (500 unless said)")
      ->check(CLI::Range(1, kMostFiles));
  demo->add_option("--seed", arguments->seed, "The same seed and day give the same company");
  Choose(demo, chosen, arguments, Demo);
}

}  // namespace tallwick::cli
