#include "cli/verify/company_verifier.h"

#include <map>
#include <memory>

#include "cli/verify/table_verifier.h"
#include "core/text.h"
#include "shell/company_tables.h"
#include "tables/bank_tables.h"
#include "tables/keys.h"
#include "tables/users_table.h"

namespace tallwick::cli {

namespace {

// A deposit item's reference taken apart: date, sequence and item, 8 + 2 + 2 characters.
struct ItemReference {
  std::string dated;
  std::string sequence;
  int item = 0;  // 0 = the text is no reference
};

ItemReference TakeApart(const std::string& reference) {
  if (reference.size() < 12) return {};
  const std::string_view item = Trim(std::string_view(reference).substr(10, 2));
  if (!IsAllDigits(item)) return {};
  return {reference.substr(0, 8), reference.substr(8, 2), std::stoi(std::string(item))};
}

std::string Of(std::string_view file_number) {
  return " of file " + Quoted(Trim(file_number));
}

class CompanyVerifier {
 public:
  explicit CompanyVerifier(Session& session) : session_(session), xrefs_(session.Company().xrefs) {}

  std::vector<Problem> Run() {
    for (TableBase* table : session_.Company().All()) CheckTags(*table);
    CheckUsers();
    for (const BankRecord& bank : session_.Company().banks.InNameOrder()) OpenBank(bank);
    for (auto& [code, bank] : banks_)
      if (bank) CheckBank(code, *bank);
    CheckReferences();
    return std::move(problems_);
  }

 private:
  void Add(const TableBase& table, std::string text) {
    problems_.push_back({table.Name(), table.RecordNumber(), std::move(text)});
  }
  void CheckTags(TableBase& table) {
    const std::vector<Problem> found = VerifyTable(table.Data(), table.Handle(), table.Name());
    problems_.insert(problems_.end(), found.begin(), found.end());
  }
  void CheckUsers();
  void OpenBank(const BankRecord& bank);
  void CheckBank(const std::string& code, BankTables& bank);
  void CheckDeposits(const std::string& code, BankTables& bank);
  void CheckDepositItem(const std::string& code, BankTables& bank, const DepositRecord& deposit, int item);
  void CheckVoucherCounter(const std::string& code, BankTables& bank);
  void CheckReferences();
  void CheckReference(const XrefRecord& xref);
  bool HasReference(const XrefRecord& xref) { return xrefs_.SeekReference(xref); }

  Session& session_;
  XrefTable& xrefs_;
  // By code; null for a bank whose tables do not open: what points into them is not judged.
  std::map<std::string, std::unique_ptr<BankTables>> banks_;
  std::vector<Problem> problems_;
};

void CompanyVerifier::CheckUsers() {
  UsersTable users(session_.Home());
  UserBanksTable banks(session_.Home());
  for (TableBase* table : {static_cast<TableBase*>(&users), static_cast<TableBase*>(&banks)})
    if (table->Exists() && table->Open() > 0) CheckTags(*table);
}

void CompanyVerifier::OpenBank(const BankRecord& bank) {
  auto tables = std::make_unique<BankTables>(session_.Home());
  if (!tables->Open(bank.code)) {
    problems_.push_back({"ESCROW_BANKS", 0, "the tables of bank " + bank.code + " do not open"});
    tables.reset();
  }
  banks_[bank.code] = std::move(tables);
}

void CompanyVerifier::CheckBank(const std::string& code, BankTables& bank) {
  for (TableBase* table : bank.All()) CheckTags(*table);
  for (bool on = bank.checks.Top("CHXNUMBER"); on; on = bank.checks.Skip()) {
    const CheckRecord check = bank.checks.Read();
    if (!HasReference(CheckXref(check.file_number, code, check.number)))
      Add(bank.checks, "check " + check.number + Of(check.file_number) + " has no cross-reference");
  }
  for (bool on = bank.wires.Top("WIRENUMBER"); on; on = bank.wires.Skip()) {
    const WireRecord wire = bank.wires.Read();
    if (!HasReference(WireXref(wire.file_number, code, wire.number)))
      Add(bank.wires, "wire " + wire.number + Of(wire.file_number) + " has no cross-reference");
  }
  for (bool on = bank.vouchers.Top("VCHRNUMBER"); on; on = bank.vouchers.Skip()) {
    const VoucherRecord voucher = bank.vouchers.Read();
    if (!HasReference(VoucherXref(voucher.file_number, code, voucher.number)))
      Add(bank.vouchers, "voucher " + voucher.number + Of(voucher.file_number) + " has no cross-reference");
  }
  CheckDeposits(code, bank);
  CheckVoucherCounter(code, bank);
}

void CompanyVerifier::CheckDeposits(const std::string& code, BankTables& bank) {
  for (bool on = bank.deposits.Top("DEPODATED"); on; on = bank.deposits.Skip()) {
    const DepositRecord deposit = bank.deposits.Read();
    for (int item = 1; item <= kDepositItems; ++item)
      if (!deposit.items[static_cast<std::size_t>(item) - 1].file_number.empty())
        CheckDepositItem(code, bank, deposit, item);
  }
  for (bool on = bank.deposit_xrefs.Top("DXRFFILENO"); on; on = bank.deposit_xrefs.Skip()) {
    const DepositXrefRecord xref = bank.deposit_xrefs.Read();
    const bool numbered = IsAllDigits(xref.item) && xref.item.size() <= 2;
    const std::size_t item = numbered ? static_cast<std::size_t>(std::stoi(xref.item)) : 0;
    const bool there = item >= 1 && item <= kDepositItems &&
                       bank.deposits.SeekDeposit(xref.dated, xref.sequence) &&
                       SameKey(bank.deposits.Read().items[item - 1].file_number, xref.file_number);
    if (!there)
      Add(bank.deposit_xrefs, "names item " + xref.item + " of deposit " + xref.dated + " " + xref.sequence +
                                  Of(xref.file_number) + ", which is not there");
  }
}

void CompanyVerifier::CheckDepositItem(const std::string& code, BankTables& bank,
                                       const DepositRecord& deposit, int item) {
  const std::string& file = deposit.items[static_cast<std::size_t>(item) - 1].file_number;
  const std::string what = "item " + std::to_string(item) + " of deposit " + deposit.dated + " " +
                           deposit.sequence + Of(file) + " has no ";
  if (!HasReference(DepositItemXref(file, code, deposit.dated, deposit.sequence, item)))
    Add(bank.deposits, what + "cross-reference");
  if (!bank.deposit_xrefs.SeekItem({file, deposit.dated, deposit.sequence, std::to_string(item)}))
    Add(bank.deposits, what + "deposit cross-reference");
}

void CompanyVerifier::CheckVoucherCounter(const std::string& code, BankTables& bank) {
  if (!bank.vouchers.Bottom("VCHRNUMBER")) return;
  const std::string last = bank.vouchers.Read().number;
  const std::optional<BankRecord> record = session_.Company().banks.Find(code);
  if (!record || !IsAllDigits(last) || std::stoll(last) <= record->last_voucher) return;
  Add(session_.Company().banks, "the voucher counter of bank " + code + " is " +
                                    std::to_string(record->last_voucher) + ", below voucher " + last);
}

void CompanyVerifier::CheckReferences() {
  for (bool on = xrefs_.Top("XRFSFILEBK"); on; on = xrefs_.Skip()) CheckReference(xrefs_.Read());
}

void CompanyVerifier::CheckReference(const XrefRecord& xref) {
  const auto found = banks_.find(std::string(Trim(xref.bank_code)));
  if (found == banks_.end()) {
    Add(xrefs_, "names bank " + Quoted(Trim(xref.bank_code)) + ", which is not there");
    return;
  }
  if (!found->second) return;
  BankTables& bank = *found->second;
  bool there = false;
  if (xref.kind == "C") {
    there =
        bank.checks.SeekNumber(xref.reference) && SameKey(bank.checks.Read().file_number, xref.file_number);
  } else if (xref.kind == "W") {
    there = bank.wires.SeekNumber(xref.reference) && SameKey(bank.wires.Read().file_number, xref.file_number);
  } else if (xref.kind == "V") {
    there = bank.vouchers.SeekNumber(xref.reference) &&
            SameKey(bank.vouchers.Read().file_number, xref.file_number);
  } else if (xref.kind == "D") {
    const ItemReference item = TakeApart(xref.reference);
    there = item.item >= 1 && item.item <= kDepositItems &&
            bank.deposits.SeekDeposit(item.dated, item.sequence) &&
            SameKey(bank.deposits.Read().items[static_cast<std::size_t>(item.item) - 1].file_number,
                    xref.file_number);
  }
  if (!there)
    Add(xrefs_, "names " + Quoted(xref.kind + " " + std::string(Trim(xref.reference))) +
                    Of(xref.file_number) + " in bank " + found->first + ", which is not there");
}

}  // namespace

std::vector<Problem> VerifyCompany(Session& session) {
  return CompanyVerifier(session).Run();
}

}  // namespace tallwick::cli
