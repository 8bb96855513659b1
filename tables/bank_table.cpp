#include "tables/bank_table.h"

#include "core/encoding.h"
#include "core/text.h"
#include "tables/bank_code.h"
#include "tables/bank_tables.h"
#include "tables/keys.h"

namespace tallwick {

namespace {

constexpr int kCodeWidth = 8;
constexpr int kNameWidth = 60;

constexpr std::array kColumns = {
    Text<&BankRecord::code>("BANKCODE", kCodeWidth),
    Text<&BankRecord::name>("BANKNAME", kNameWidth),
    Text<&BankRecord::address1>("BANKADDR1", 40),
    Text<&BankRecord::address2>("BANKADDR2", 40),
    Text<&BankRecord::city_state>("BANKCITYST", 40),
    Text<&BankRecord::account_number>("BANKACCTNO", 24),
    Text<&BankRecord::phone>("BANKPHONE", 14),
    Number<&BankRecord::accounting, &Period::month>("BANKACCTMO", 2),
    Number<&BankRecord::accounting, &Period::day>("BANKACCTDA", 2),
    Number<&BankRecord::accounting, &Period::year>("BANKACCTYR", 4),
    Number<&BankRecord::reconciled, &Period::month>("BANKRECOMO", 2),
    Number<&BankRecord::reconciled, &Period::day>("BANKRECODA", 2),
    Number<&BankRecord::reconciled, &Period::year>("BANKRECOYR", 4),
    Number<&BankRecord::work_in_progress, &Period::month>("BANKWIPDMO", 2),
    Number<&BankRecord::work_in_progress, &Period::day>("BANKWIPDDA", 2),
    Number<&BankRecord::work_in_progress, &Period::year>("BANKWIPDYR", 4),
    Number<&BankRecord::purged, &Period::month>("BANKPURGMO", 2),
    Number<&BankRecord::purged, &Period::day>("BANKPURGDA", 2),
    Number<&BankRecord::purged, &Period::year>("BANKPURGYR", 4),
    Number<&BankRecord::auto_date>("BANKAUTODT", 1),
    Money<&BankRecord::beginning_balance>("BANKBEGBAL", 14),
    Money<&BankRecord::ending_balance>("BANKENDBAL", 14),
    Money<&BankRecord::statement_balance>("BANKSTMBAL", 14),
    Money<&BankRecord::adjusting_transactions>("BANKADJTRN", 14),
    Money<&BankRecord::statement_credits>("BANKSTMCRD", 14),
    Money<&BankRecord::statement_charges>("BANKSTMCHG", 14),
    Number<&BankRecord::last_voucher>("BANKVCHRNO", 12),
    Number<&BankRecord::clearing_account, &ClearingColumns::first>("BCIACCTSTC", 3),
    Number<&BankRecord::clearing_account, &ClearingColumns::last>("BCIACCTENC", 3),
    Number<&BankRecord::clearing_check, &ClearingColumns::first>("BCICKNOSTC", 3),
    Number<&BankRecord::clearing_check, &ClearingColumns::last>("BCICKNOENC", 3),
    Number<&BankRecord::clearing_date, &ClearingColumns::first>("BCIDATESTC", 3),
    Number<&BankRecord::clearing_date, &ClearingColumns::last>("BCIDATEENC", 3),
    Text<&BankRecord::clearing_date_format>("BCIDATEFMT", 10),
    Number<&BankRecord::clearing_amount, &ClearingColumns::first>("BCIAMTSTC", 3),
    Number<&BankRecord::clearing_amount, &ClearingColumns::last>("BCIAMTENC", 3),
    Number<&BankRecord::date_type>("BANKDTETYP", 1),
    Text<&BankRecord::check_stock>("BANKCKSTK", 12),
    Text<&BankRecord::check_position>("BANKCKPPOS", 6),
    Number<&BankRecord::check_copies>("ChkCopies", 2),
    Switch<&BankRecord::check_inventory>("ChkInvtory"),
    Digits<&BankRecord::lowest_check>("ChkLowNmbr", 12),
    Digits<&BankRecord::highest_check>("ChkHiNmbr", 12),
    Switch<&BankRecord::positive_pay>("PPUsePP"),
    Switch<&BankRecord::audit_trail>("AuditTrail"),
    Text<&BankRecord::report_from>("FromRptDat", 10),
    Text<&BankRecord::report_through>("ThruRptDat", 10),
    Text<&BankRecord::report_statement>("StmtRptDat", 10),
    Switch<&BankRecord::month_statements>("MDYMoStmts"),
    Number<&BankRecord::check_paper>("BankCkPpr", 4),
    Text<&BankRecord::routing_number>("BankABANo", 24),
    Number<&BankRecord::print_security_line>("PRTSECLINE", 1),
    Number<&BankRecord::security_line_x>("SECLINEX", 5),
    Number<&BankRecord::security_line_y>("SECLINEY", 5),
    Number<&BankRecord::security_line_angle>("SECLINEANG", 3),
};

constexpr auto kFields = FieldsOf(kColumns);

constexpr TagLayout kTags[] = {
    {"BANKCODE", "UPPER (BankCode)", kLiveRecords, true},
    {"BANKNAME", "UPPER (BankName + BankCode)", kLiveRecords, true},
    kDeletedForReuse,
};

constexpr std::string_view kMayBeEmpty[] = {
    "BANKADDR", "BANKCITYST", "BANKACCTNO", "BANKPHONE",  "BANKAUTODT", "BCI",
    "BANKCK",   "CHK",        "PPUSEPP",    "AUDITTRAIL", "FROMRPT",    "THRURPT",
    "STMTRPT",  "MDYMO",      "BANKABANO",  "PRTSECLINE", "SECLINE"};

}  // namespace

constexpr TableLayout kBankLayout{
    "ESCROW_BANKS",
    false,
    kFields,
    kTags,
    {" was not created.", "\rError code = ", "", "Create Database for Banks", "Open Database Banks"},
    kMayBeEmpty};

BankTable::BankTable(const TableHome& home) : TypedTable(home, kBankLayout, kColumns) {}

bool BankTable::SeekCode(std::string_view code) {
  return Seek("BANKCODE", KeyPart(Trim(code), kCodeWidth));
}

std::optional<BankRecord> BankTable::Find(std::string_view code) {
  return SeekCode(code) ? std::optional(Read()) : std::nullopt;
}

std::vector<BankRecord> BankTable::InNameOrder() {
  std::vector<BankRecord> banks;
  for (bool found = Top("BANKNAME"); found; found = Skip()) banks.push_back(Read());
  return banks;
}

std::string BankTable::NameKey(const BankRecord& bank) {
  const std::string key = KeyPart(bank.name, kNameWidth) + KeyPart(bank.code, kCodeWidth);
  return ToWindows1252(key).value_or(key);
}

int BankTable::AddBank(const BankRecord& bank) {
  std::string problem = BankCodeProblem(bank.code);
  if (!problem.empty()) {
    Home().boxes.Critical(kBankLayout.texts.open_title, problem);
    return engine::kErrorFieldValue;
  }
  int code = Add(bank);
  return code == engine::kSuccess ? BankTables(Home()).CreateMissing(bank.code) : code;
}

}  // namespace tallwick
