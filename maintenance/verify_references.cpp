#include "maintenance/verify_references.h"

#include <optional>

#include "core/text.h"
#include "tables/keys.h"

namespace tallwick {

namespace {

// A deposit item's reference taken apart: date, sequence and item, 8 + 2 + 2 characters.
struct ItemReference {
  std::string dated;
  std::string sequence;
  int item = 0;  // 0 = the text is no reference
};

// "1" to "15"; 0 for anything else.
int ItemNumber(std::string_view text) {
  const std::string_view digits = Trim(text);
  if (digits.empty() || digits.size() > 2 || !IsAllDigits(digits)) return 0;
  const int item = std::stoi(std::string(digits));
  return item <= kDepositItems ? item : 0;
}

ItemReference TakeApart(const std::string& reference) {
  if (reference.size() < 12) return {};
  return {reference.substr(0, 8), reference.substr(8, 2),
          ItemNumber(std::string_view(reference).substr(10, 2))};
}

std::string Of(std::string_view file_number) {
  return " of file " + Quoted(Trim(file_number));
}

// Where a reference leads to.
enum class Target { kThere, kUnderAnotherFile, kNotThere, kNotJudged };

// A table of items that stand alone: checks, wires, vouchers.
struct ItemKind {
  const char* kind;
  const char* name;
  const char* number_field;
  const char* file_field;
  XrefRecord (*xref)(std::string_view file, std::string_view bank, std::string_view number);
};
constexpr ItemKind kChecks = {"C", "check", "CHXNUMBER", "CHXFILENO", CheckXref};
constexpr ItemKind kWires = {"W", "wire", "WIRENUMBER", "WIREFILENO", WireXref};
constexpr ItemKind kVouchers = {"V", "voucher", "VCHRNUMBER", "VCHRFILENO", VoucherXref};

class ReferenceCheck {
 public:
  ReferenceCheck(ExaminedCompany& company, std::vector<CompanyProblem>* problems)
      : company_(company), problems_(*problems) {}

  void Run() {
    for (auto& [code, bank] : company_.by_bank) {
      CheckItems(code, bank->checks, kChecks);
      CheckItems(code, bank->wires, kWires);
      CheckVoucherCounter(code, CheckItems(code, bank->vouchers, kVouchers));
      CheckDeposits(code, *bank);
      CheckDepositXrefs(*bank);
    }
    CheckXrefs();
  }

 private:
  void Add(const TableBase& table, std::string text, Remedy remedy = {}) {
    problems_.push_back({table.Name(), table.RecordNumber(), std::move(text), std::move(remedy)});
  }

  // Calls `visit` on each live record, in record order, which no index can mislead.
  template <class Visit>
  void Walk(TableBase& table, Visit visit) {
    if (!table.IsOpen()) return;
    table.Data().SetReadAhead(table.Handle(), true);
    for (bool on = table.Top(""); on; on = table.Skip())
      if (!table.Data().IsRecordDeleted(table.Handle())) visit();
    table.Data().SetReadAhead(table.Handle(), false);
  }

  bool MayJudgeXrefs() const { return company_.IsTrusted(company_.xrefs); }

  // The highest number made of digits.
  std::int64_t CheckItems(const std::string& code, TableBase& table, const ItemKind& kind);
  void CheckVoucherCounter(const std::string& code, std::int64_t highest);
  void CheckDeposits(const std::string& code, BankTables& bank);
  void CheckDepositItem(const std::string& code, BankTables& bank, const DepositRecord& deposit, int item);
  void CheckDepositXrefs(BankTables& bank);
  void CheckXrefs();
  Target Find(BankTables& bank, const XrefRecord& xref);
  template <class Items>
  Target FindItem(Items& items, const char* file_field, const XrefRecord& xref);
  Target FindDepositItem(BankTables& bank, const ItemReference& item, std::string_view file);

  ExaminedCompany& company_;
  std::vector<CompanyProblem>& problems_;
};

std::int64_t ReferenceCheck::CheckItems(const std::string& code, TableBase& table, const ItemKind& kind) {
  std::int64_t highest = 0;
  const FieldHandle number_field = table.Field(kind.number_field);
  const FieldHandle file_field = table.Field(kind.file_field);
  Walk(table, [&] {
    const std::string number = table.Data().GetStringFieldValueByPointer(table.Handle(), number_field);
    const std::string file = table.Data().GetStringFieldValueByPointer(table.Handle(), file_field);
    if (IsAllDigits(number)) highest = std::max<std::int64_t>(highest, std::stoll(number));
    if (!MayJudgeXrefs()) return;
    const XrefRecord xref = kind.xref(file, code, number);
    if (!company_.xrefs.SeekReference(xref))
      Add(table, std::string(kind.name) + " " + number + Of(file) + " has no cross-reference", AddXref{xref});
  });
  return highest;
}

void ReferenceCheck::CheckVoucherCounter(const std::string& code, std::int64_t highest) {
  BankTable& banks = company_.banks;
  if (highest == 0 || !company_.IsTrusted(banks)) return;
  const std::optional<BankRecord> bank = banks.Find(code);
  if (!bank || bank->last_voucher >= highest) return;
  Add(banks,
      "the voucher counter of bank " + code + " is " + std::to_string(bank->last_voucher) +
          ", below voucher " + std::to_string(highest),
      RaiseVoucherCounter{code, highest});
}

void ReferenceCheck::CheckDeposits(const std::string& code, BankTables& bank) {
  Walk(bank.deposits, [&] {
    const DepositRecord deposit = bank.deposits.Read();
    for (int item = 1; item <= kDepositItems; ++item)
      if (!deposit.items[static_cast<std::size_t>(item) - 1].file_number.empty())
        CheckDepositItem(code, bank, deposit, item);
  });
}

void ReferenceCheck::CheckDepositItem(const std::string& code, BankTables& bank, const DepositRecord& deposit,
                                      int item) {
  const std::string& file = deposit.items[static_cast<std::size_t>(item) - 1].file_number;
  const std::string what = "item " + std::to_string(item) + " of deposit " + deposit.dated + " " +
                           deposit.sequence + Of(file) + " has no ";
  const XrefRecord xref = DepositItemXref(file, code, deposit.dated, deposit.sequence, item);
  if (MayJudgeXrefs() && !company_.xrefs.SeekReference(xref))
    Add(bank.deposits, what + "cross-reference", AddXref{xref});
  const DepositXrefRecord own = {file, deposit.dated, deposit.sequence, std::to_string(item)};
  if (!bank.deposit_xrefs.IsOpen() && bank.deposit_xrefs.Exists(code)) return;  // reported already
  if (bank.deposit_xrefs.IsOpen() && !company_.IsTrusted(bank.deposit_xrefs)) return;
  if (!bank.deposit_xrefs.IsOpen() || !bank.deposit_xrefs.SeekItem(own))
    Add(bank.deposits, what + "deposit cross-reference", AddDepositXref{code, own});
}

void ReferenceCheck::CheckDepositXrefs(BankTables& bank) {
  Walk(bank.deposit_xrefs, [&] {
    const DepositXrefRecord xref = bank.deposit_xrefs.Read();
    const Target target =
        FindDepositItem(bank, {xref.dated, xref.sequence, ItemNumber(xref.item)}, xref.file_number);
    if (target == Target::kThere || target == Target::kNotJudged) return;
    Add(bank.deposit_xrefs,
        "names item " + xref.item + " of deposit " + xref.dated + " " + xref.sequence + Of(xref.file_number) +
            ", " +
            std::string(target == Target::kUnderAnotherFile ? "which stands under another file"
                                                            : "which is not there"));
  });
}

void ReferenceCheck::CheckXrefs() {
  Walk(company_.xrefs, [&] {
    const XrefRecord xref = company_.xrefs.Read();
    const std::string code(Trim(xref.bank_code));
    const auto bank = company_.by_bank.find(code);
    if (bank == company_.by_bank.end()) {
      if (company_.banks.IsOpen()) Add(company_.xrefs, "names bank " + Quoted(code) + ", which is not there");
      return;
    }
    const Target target = Find(*bank->second, xref);
    if (target == Target::kThere || target == Target::kNotJudged) return;
    Add(company_.xrefs,
        "names " + Quoted(xref.kind + " " + std::string(Trim(xref.reference))) + Of(xref.file_number) +
            " in bank " + code + ", " +
            std::string(target == Target::kUnderAnotherFile ? "which stands under another file"
                                                            : "which is not there"));
  });
}

Target ReferenceCheck::Find(BankTables& bank, const XrefRecord& xref) {
  if (xref.kind == kChecks.kind) return FindItem(bank.checks, kChecks.file_field, xref);
  if (xref.kind == kWires.kind) return FindItem(bank.wires, kWires.file_field, xref);
  if (xref.kind == kVouchers.kind) return FindItem(bank.vouchers, kVouchers.file_field, xref);
  if (xref.kind == "D") return FindDepositItem(bank, TakeApart(xref.reference), xref.file_number);
  return Target::kNotThere;
}

template <class Items>
Target ReferenceCheck::FindItem(Items& items, const char* file_field, const XrefRecord& xref) {
  if (!company_.IsTrusted(items)) return Target::kNotJudged;
  if (!items.SeekNumber(xref.reference)) return Target::kNotThere;
  const std::string file = items.Data().GetStringFieldValueByPointer(items.Handle(), items.Field(file_field));
  return SameKey(file, xref.file_number) ? Target::kThere : Target::kUnderAnotherFile;
}

Target ReferenceCheck::FindDepositItem(BankTables& bank, const ItemReference& item, std::string_view file) {
  if (!company_.IsTrusted(bank.deposits)) return Target::kNotJudged;
  if (item.item == 0 || !bank.deposits.SeekDeposit(item.dated, item.sequence)) return Target::kNotThere;
  const DepositRecord deposit = bank.deposits.Read();
  const std::string& held = deposit.items[static_cast<std::size_t>(item.item) - 1].file_number;
  if (SameKey(held, file)) return Target::kThere;
  return held.empty() ? Target::kNotThere : Target::kUnderAnotherFile;
}

}  // namespace

void VerifyReferences(ExaminedCompany& company, std::vector<CompanyProblem>* problems) {
  ReferenceCheck(company, problems).Run();
}

}  // namespace tallwick
