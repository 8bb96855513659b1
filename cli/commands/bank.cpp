// bank: the records of ESCROW_BANKS by field name.
#include "cli/commands/command.h"
#include "cli/field_values.h"
#include "cli/json_values.h"
#include "core/text.h"
#include "shell/company_tables.h"
#include "shell/rights.h"
#include "tables/bank_code.h"

namespace tallwick::cli {

namespace {

struct BankArguments {
  std::string code;
  std::vector<std::string> values;
};

Json BankJson(BankTable& banks) {
  return RecordJson(banks.Data(), banks.Handle(), banks.Data().FieldList(banks.Handle()), Trimming::kBoth);
}

int ShowBank(Office& office, BankTable& banks) {
  const Json fields = BankJson(banks);
  office.Out().Set("fields", fields);
  office.Out().Line(FieldLines(fields));
  return kDone;
}

int NoSuchBank(Office& office, const std::string& code) {
  office.Out().Fail("There is no bank " + Quoted(code));
  return kRefused;
}

bool Names(const std::vector<FieldAssignment>& assignments, std::string_view field) {
  for (const FieldAssignment& assignment : assignments)
    if (assignment.field == field) return true;
  return false;
}

// Periods are kept as month, day and year in fields of their own: what none of their screens would take must
// not come in by field name. "" when nothing is wrong.
std::string PeriodFieldProblem(const std::vector<FieldAssignment>& assignments, BankTable& banks) {
  for (const FieldAssignment& assignment : assignments) {
    if (!assignment.field.starts_with("BANK")) continue;
    const bool month = assignment.field.ends_with("MO");
    if (!month && !assignment.field.ends_with("DA")) continue;
    const std::int64_t value =
        banks.Data().GetIntegerByPointer(banks.Handle(), banks.Field(assignment.field));
    if (value < 0 || value > (month ? 12 : 31))
      return assignment.field + ": there is no " + (month ? "month " : "day ") + std::to_string(value) +
             ". Please enter 0 to " + (month ? "12." : "31.");
  }
  return {};
}

// Assign, and the tests that only a bank's fields have.
bool AssignBank(BankTable& banks, const std::vector<FieldAssignment>& assignments, Output& out) {
  if (!Assign(banks.Data(), banks.Handle(), assignments, out)) return false;
  const std::string problem = PeriodFieldProblem(assignments, banks);
  if (!problem.empty()) out.Fail(problem);
  return problem.empty();
}

// What is not said of a new bank: its books begin today, its periods have the form of its accounting date,
// and its changes are logged.
void FillDefaults(BankRecord& bank, const std::vector<FieldAssignment>& assignments, const Date& today) {
  if (bank.accounting.IsEmpty()) bank.accounting = {today.month, today.day, today.year};
  if (!Names(assignments, "BANKDTETYP")) bank.date_type = bank.accounting.day == 0 ? 0 : 1;
  if (!Names(assignments, "AUDITTRAIL")) bank.audit_trail = true;
}

int Add(Office& office, const BankArguments& arguments) {
  if (!office.Granted(kRightBankAccounts)) return office.Status();
  std::vector<FieldAssignment> assignments;
  if (!ParseAssignments(arguments.values, &assignments, office.Out())) return kWrongUsage;
  if (const std::string problem = BankCodeProblem(arguments.code); !problem.empty()) {
    office.Out().Fail(problem);
    return kRefused;
  }
  if (Names(assignments, "BANKCODE")) {
    office.Out().Fail("BANKCODE is said already: it is the word behind \"add\"");
    return kRefused;
  }
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  BankTable& banks = session->Company().banks;
  // The values are tried in the buffer of a record that is then dropped, so that a refused one leaves no
  // trace.
  clsKVRData& store = banks.Data();
  store.AddRecordStart(banks.Handle());
  const bool assigned = AssignBank(banks, assignments, office.Out());
  BankRecord bank = banks.Read();
  store.SetChangedFlag(banks.Handle(), false);
  if (!assigned) return kRefused;
  bank.code = TrimmedBankCode(arguments.code);
  FillDefaults(bank, assignments, office.TheClock().Now().date);
  if (banks.SeekCode(bank.code)) {
    office.Out().Fail("There is a bank " + Quoted(bank.code) + " already");
    return kRefused;
  }
  if (const int code = banks.AddBank(bank); code != 0) {
    office.Out().Fail("The bank was not added: " + std::string(engine::error4text(code)));
    return kRefused;
  }
  return banks.SeekCode(bank.code) ? ShowBank(office, banks) : NoSuchBank(office, bank.code);
}

int Set(Office& office, const BankArguments& arguments) {
  if (!office.Granted(kRightBankAccounts)) return office.Status();
  std::vector<FieldAssignment> assignments;
  if (!ParseAssignments(arguments.values, &assignments, office.Out())) return kWrongUsage;
  if (Names(assignments, "BANKCODE")) {
    office.Out().Fail("BANKCODE names the bank's tables and cannot be changed");
    return kRefused;
  }
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  BankTable& banks = session->Company().banks;
  if (!banks.SeekCode(arguments.code)) return NoSuchBank(office, arguments.code);
  if (banks.Lock() != engine::kSuccess) {
    office.Out().Fail("The bank is in use at another workstation");
    return kRefused;
  }
  clsKVRData& store = banks.Data();
  const bool assigned = AssignBank(banks, assignments, office.Out());
  if (!assigned) store.SetChangedFlag(banks.Handle(), false);
  const int code = assigned ? store.WriteTheRecord(banks.Handle()) : 0;
  banks.Unlock();
  if (!assigned) return kRefused;
  if (code == 0) return ShowBank(office, banks);
  office.Out().Fail("The bank was not changed: " + std::string(engine::error4text(code)));
  return kRefused;
}

int Show(Office& office, const BankArguments& arguments) {
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  BankTable& banks = session->Company().banks;
  return banks.SeekCode(arguments.code) ? ShowBank(office, banks) : NoSuchBank(office, arguments.code);
}

int List(Office& office) {
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  BankTable& banks = session->Company().banks;
  Json list = Json::array();
  std::vector<std::vector<std::string>> rows;
  for (bool found = banks.Top("BANKNAME"); found; found = banks.Skip()) {
    list.push_back(BankJson(banks));
    const BankRecord bank = banks.Read();
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
  add("add", "Adds a bank and makes its tables", Add)->add_option("FIELD=VALUE", arguments->values);
  add("set", "Changes fields of a bank", Set)->add_option("FIELD=VALUE", arguments->values)->required();
  add("show", "A bank's fields", Show);
  Choose(bank->add_subcommand("list", "Every bank, by name"), chosen, List);
}

}  // namespace tallwick::cli
