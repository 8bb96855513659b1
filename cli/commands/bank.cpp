// bank: the records of ESCROW_BANKS by field name.
#include "cli/commands/posted.h"
#include "cli/field_values.h"
#include "maintenance/bank_maintenance.h"
#include "shell/clsSecurity.h"
#include "shell/company_tables.h"

namespace tallwick::cli {

namespace {

struct BankArguments {
  std::string code;
  std::vector<std::string> values;
};

// Gives the fields to one of the functions that keep banks, and shows the bank as it then is.
template <std::string (*kChange)(Session&, std::string_view, const std::vector<FieldAssignment>&)>
int Change(Office& office, const BankArguments& arguments) {
  std::vector<FieldAssignment> values;
  if (!ParseAssignments(arguments.values, &values, office.Out())) return kWrongUsage;
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  if (const std::string problem = kChange(*session, arguments.code, values); !problem.empty())
    return office.Refuse(problem);
  return ShowFields(office, session->Company().banks);
}

int Show(Office& office, const BankArguments& arguments) {
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  return SeekBankAccount(*session, arguments.code) ? ShowFields(office, session->Company().banks)
                                                   : office.Refuse(NoSuchBank(*session, arguments.code));
}

int List(Office& office) {
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  // Without the users nobody may look at any bank, and the list would seem to say that there are none.
  const std::string problem = session->SecurityOn() ? clsSecurity::UsersProblem(session->Home()) : "";
  if (!problem.empty()) {
    office.Out().Fail(problem);
    return kNoTables;
  }
  BankTable& banks = session->Company().banks;
  Json list = Json::array();
  std::vector<std::vector<std::string>> rows;
  for (bool found = banks.Top("BANKNAME"); found; found = banks.Skip()) {
    const BankRecord bank = banks.Read();
    if (!MayReadBank(*session, bank.code)) continue;
    list.push_back(FieldsJson(banks));
    rows.push_back(
        {bank.code, bank.name, bank.account_number, LongForm(bank.accounting), LongForm(bank.reconciled)});
  }
  office.Out().Set("banks", list);
  office.Out().Line(
      TextTable({"Code", "Name", "Account", "Accounting period", "Last reconciliation"}, "<<<<<", rows));
  return kDone;
}

}  // namespace

void AddBankCommands(CLI::App& app, Action& chosen) {
  CLI::App* bank = app.add_subcommand("bank", "Bank accounts by table field name");
  bank->require_subcommand(1);
  auto arguments = std::make_shared<BankArguments>();
  const auto add = [&](const char* name, const char* what, int (*run)(Office&, const BankArguments&)) {
    CLI::App* command = bank->add_subcommand(name, what);
    command->add_option("CODE", arguments->code)->required();
    Choose(command, chosen, arguments, run);
    return command;
  };
  add("add", "Adds a bank and makes its tables", Change<AddBankAccount>)
      ->add_option("FIELD=VALUE", arguments->values);
  add("set", "Changes fields of a bank", Change<ChangeBankAccount>)
      ->add_option("FIELD=VALUE", arguments->values)
      ->required();
  add("show", "A bank's fields", Show);
  Choose(bank->add_subcommand("list", "The banks that the user may look at, by name"), chosen, List);
}

}  // namespace tallwick::cli
