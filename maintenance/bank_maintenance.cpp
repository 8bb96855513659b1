#include "maintenance/bank_maintenance.h"

#include "core/text.h"
#include "maintenance/bank_trail.h"
#include "maintenance/period_form.h"
#include "maintenance/stray_tables.h"
#include "shell/company_tables.h"
#include "shell/rights.h"
#include "shell/start_up.h"
#include "tables/bank_code.h"

namespace tallwick {
namespace {

// Periods are kept as month, day and year in fields of their own: what none of their screens would take must
// not come in by field name. "" when nothing is wrong.
std::string PeriodFieldProblem(const std::vector<FieldAssignment>& values, BankTable& banks) {
  for (const FieldAssignment& value : values) {
    if (!value.field.starts_with("BANK")) continue;
    const bool month = value.field.ends_with("MO");
    if (!month && !value.field.ends_with("DA")) continue;
    const std::int64_t number = banks.Data().GetIntegerByPointer(banks.Handle(), banks.Field(value.field));
    if (number < 0 || number > (month ? 12 : 31))
      return value.field + ": there is no " + (month ? "month " : "day ") + std::to_string(number) +
             ". Please enter 0 to " + (month ? "12." : "31.");
  }
  return {};
}

// Sets the fields in the record's buffer, with the tests that only a bank's fields have.
std::string Assign(BankTable& banks, const std::vector<FieldAssignment>& values) {
  const std::string problem = AssignFields(banks.Data(), banks.Handle(), values);
  return problem.empty() ? PeriodFieldProblem(values, banks) : problem;
}

void FillDefaults(BankRecord& bank, const std::vector<FieldAssignment>& values, const Date& today) {
  if (bank.accounting.IsEmpty()) bank.accounting = {today.month, today.day, today.year};
  if (!Names(values, "BANKDTETYP")) bank.date_type = bank.accounting.day == 0 ? 0 : 1;
  if (!Names(values, "AUDITTRAIL")) bank.audit_trail = true;
}

// Tables of a bank that is not there any more would come to life as the new bank's.
bool MayAdopt(const Session& session, const std::string& code) {
  const std::vector<StrayTable> tables = TablesLeftOf(session.Home(), code);
  if (tables.empty()) return true;
  const std::string text =
      "There are transactions of a bank " + Quoted(code) + " already: " + ListOf(tables) +
      ".\r\rA new bank with this code has them as its own.  Answer No, and choose another "
      "code, where they are another bank's.\r\rAdd the bank with them?";
  return session.Boxes().Show({BoxIcon::kExclamation, std::string(kProgramName), text, BoxButtons::kYesNo,
                               BoxAnswer::kNo}) == BoxAnswer::kYes;
}

}  // namespace

bool MayReadBank(Session& session, std::string_view code) {
  return session.MayUseBank(code) || session.MayUse(kAdministrator);
}

bool SeekBankAccount(Session& session, std::string_view code) {
  BankTable& banks = session.Company().banks;
  return banks.SeekCode(code) && MayReadBank(session, banks.Read().code);
}

std::string NoSuchBank(Session& session, std::string_view code) {
  const std::string what = "There is no bank " + Quoted(Trim(code));
  return session.MayUse(kAdministrator) ? what : what + " that this user may work with";
}

std::string AddBankAccount(Session& session, std::string_view code,
                           const std::vector<FieldAssignment>& values) {
  if (!session.MayUse(kRightBankAccounts)) return std::string(kCommandNotGranted);
  if (std::string problem = BankCodeProblem(code); !problem.empty()) return problem;
  if (Names(values, "BANKCODE")) return "BANKCODE is said already: it is the word behind \"add\"";
  // The values are tried in the buffer of a record that is then dropped, so that a refused one leaves no
  // trace.
  BankTable& banks = session.Company().banks;
  clsKVRData& store = banks.Data();
  if (const int begun = store.AddRecordStart(banks.Handle()); begun != engine::kSuccess)
    return "The bank was not added: " + std::string(engine::error4text(begun));
  std::string problem = Assign(banks, values);
  BankRecord bank = banks.Read();
  store.SetChangedFlag(banks.Handle(), false);
  if (!problem.empty()) return problem;
  bank.code = TrimmedBankCode(code);
  FillDefaults(bank, values, session.TheClock().Now().date);
  if (banks.SeekCode(bank.code)) return "There is a bank " + Quoted(bank.code) + " already";
  if (!MayAdopt(session, bank.code)) return "The bank was not added: tables of its code are there";
  const int result = banks.AddBank(bank);
  const bool added = result != engine::kUnique && banks.SeekCode(bank.code);
  if (result == engine::kSuccess) return {};
  const std::string why(engine::error4text(result));
  return added ? "The bank was added, but its tables could not be made: " + why +
                     ".  They are made when the bank is selected"
               : "The bank was not added: " + why;
}

std::string ChangeBankAccount(Session& session, std::string_view code,
                              const std::vector<FieldAssignment>& values) {
  if (!session.MayUse(kRightBankAccounts)) return std::string(kCommandNotGranted);
  if (Names(values, "BANKCODE")) return "BANKCODE names the bank's tables and cannot be changed";
  BankTable& banks = session.Company().banks;
  if (!SeekBankAccount(session, code)) return NoSuchBank(session, code);
  if (banks.Lock() != engine::kSuccess) return "The bank is in use at another workstation";
  clsKVRData& store = banks.Data();
  BankTrail trail(AuditTargetOf(session, code, false), session.Boxes(), store, banks.Handle());
  const BankRecord before = banks.Read();
  std::string problem = Assign(banks, values);
  if (problem.empty()) problem = PeriodFormRefusal(session.Home(), before, banks.Read());
  if (!problem.empty()) store.SetChangedFlag(banks.Handle(), false);
  const int result = problem.empty() ? store.WriteTheRecord(banks.Handle()) : 0;
  if (problem.empty() && result == 0) trail.Write();
  banks.Unlock();
  if (!problem.empty()) return problem;
  return result == 0 ? "" : "The bank was not changed: " + std::string(engine::error4text(result));
}

}  // namespace tallwick
