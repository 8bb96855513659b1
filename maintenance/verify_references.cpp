#include "maintenance/verify_references.h"

#include <optional>

#include "core/text.h"
#include "maintenance/reference_rules.h"
#include "posting/item_number.h"
#include "tables/keys.h"

namespace tallwick {

namespace {

std::string Of(std::string_view file_number) {
  return " of file " + Quoted(Trim(file_number));
}

std::string Fault(ReferenceTarget target) {
  if (target == ReferenceTarget::kUnderAnotherFile)
    return ", which stands under another file: compare both with the paper, and correct the "
           "transaction's file number where it is wrong";
  return ", which is not there: compare with the paper, and enter the transaction again where it was real";
}

class ReferenceCheck {
 public:
  ReferenceCheck(ExaminedCompany& company, std::vector<CompanyProblem>* problems)
      : company_(company), problems_(*problems) {}

  void Run() {
    for (auto& [code, bank] : company_.by_bank) {
      CheckItems(code, bank->checks, kCheckItems);
      CheckItems(code, bank->wires, kWireItems);
      CheckVoucherCounter(code, CheckItems(code, bank->vouchers, kVoucherItems));
      CheckVoucherUse(*bank);
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
    table.ForEachLive([&] {
      visit();
      return true;
    });
    table.Data().SetReadAhead(table.Handle(), false);
  }

  bool MayJudgeXrefs() const { return company_.IsTrusted(company_.xrefs); }
  ReferenceTargets TargetsIn(BankTables& bank) {
    return {bank, [this](const TableBase& table) { return company_.IsTrusted(table); }};
  }

  // The highest number made of digits.
  std::int64_t CheckItems(const std::string& code, TableBase& table, const ItemKind& kind);
  void CheckVoucherCounter(const std::string& code, std::int64_t highest);
  void CheckDeposits(const std::string& code, BankTables& bank);
  void CheckItemCount(BankTables& bank, const DepositRecord& deposit);
  void CheckVoucherUse(BankTables& bank);
  void CheckDepositItem(const std::string& code, BankTables& bank, const ReferredItem& item);
  void CheckDepositXrefs(BankTables& bank);
  void CheckXrefs();

  ExaminedCompany& company_;
  std::vector<CompanyProblem>& problems_;
};

std::int64_t ReferenceCheck::CheckItems(const std::string& code, TableBase& table, const ItemKind& kind) {
  std::int64_t highest = 0;
  Walk(table, [&] {
    const Item item = CurrentItem(table, kind);
    if (IsAllDigits(item.number)) highest = std::max<std::int64_t>(highest, std::stoll(item.number));
    if (item.number.empty()) {
      Add(table, "a " + ToLower(kind.title) + " has no number: compare the record with the paper");
      return;
    }
    if (!MayJudgeXrefs() || !company_.IsTrusted(table)) return;
    const XrefRecord xref = kind.xref(item.file_number, code, item.number);
    if (!company_.xrefs.SeekReference(xref))
      Add(table, ToLower(kind.title) + " " + item.number + Of(item.file_number) + " has no cross-reference",
          AddXref{xref});
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
    for (const ReferredItem& item : ItemsOf(deposit, code)) CheckDepositItem(code, bank, item);
    CheckItemCount(bank, deposit);
  });
}

// Other programs read as many items as the deposit counts.
void ReferenceCheck::CheckItemCount(BankTables& bank, const DepositRecord& deposit) {
  std::int32_t used = 0;
  std::int32_t last = 0;
  for (std::int32_t item = 1; item <= kDepositItems; ++item) {
    const DepositItem& one = deposit.items[static_cast<std::size_t>(item) - 1];
    if (!IsUsed(one)) continue;
    ++used;
    last = item;
  }
  if (used == deposit.item_count && last == used) return;
  Add(bank.deposits, "deposit " + deposit.dated + " " + deposit.sequence + " counts " +
                         std::to_string(deposit.item_count) + " items and holds " + std::to_string(used) +
                         ", the last as item " + std::to_string(last) +
                         ": compare it with the paper, and post it once more on the deposit screen");
}

void ReferenceCheck::CheckVoucherUse(BankTables& bank) {
  if (!company_.IsTrusted(bank.checks)) return;
  Walk(bank.vouchers, [&] {
    const VoucherRecord voucher = bank.vouchers.Read();
    if (voucher.check_number.empty() || SeekCounted(bank.checks, voucher.check_number)) return;
    Add(bank.vouchers, "voucher " + voucher.number + Of(voucher.file_number) + " is used by check " +
                           voucher.check_number +
                           ", which is not there: compare with the paper, enter the check again where it was "
                           "real, or correct "
                           "the number on the voucher screen");
  });
}

void ReferenceCheck::CheckDepositItem(const std::string& code, BankTables& bank, const ReferredItem& item) {
  const std::string what = "item " + item.own.item + " of deposit " + item.own.dated + " " +
                           item.own.sequence + Of(item.own.file_number) + " has no ";
  if (MayJudgeXrefs() && !company_.xrefs.SeekReference(item.xref))
    Add(bank.deposits, what + "cross-reference", AddXref{item.xref});
  if (!bank.deposit_xrefs.IsOpen() && bank.deposit_xrefs.Exists(code)) return;  // reported already
  if (bank.deposit_xrefs.IsOpen() && !company_.IsTrusted(bank.deposit_xrefs)) return;
  if (!bank.deposit_xrefs.IsOpen() || !bank.deposit_xrefs.SeekItem(item.own))
    Add(bank.deposits, what + "deposit cross-reference", AddDepositXref{code, item.own});
}

void ReferenceCheck::CheckDepositXrefs(BankTables& bank) {
  ReferenceTargets targets = TargetsIn(bank);
  Walk(bank.deposit_xrefs, [&] {
    const DepositXrefRecord xref = bank.deposit_xrefs.Read();
    const ReferenceTarget target = targets.Find(xref);
    if (target == ReferenceTarget::kThere || target == ReferenceTarget::kNotJudged) return;
    Add(bank.deposit_xrefs, "names item " + xref.item + " of deposit " + xref.dated + " " + xref.sequence +
                                Of(xref.file_number) + Fault(target));
  });
}

void ReferenceCheck::CheckXrefs() {
  Walk(company_.xrefs, [&] {
    const XrefRecord xref = company_.xrefs.Read();
    const std::string code(Trim(xref.bank_code));
    const auto bank = company_.by_bank.find(code);
    if (bank == company_.by_bank.end()) {
      if (company_.banks.IsOpen())
        Add(company_.xrefs, "names bank " + Quoted(code) +
                                ", which is not there: enter the bank again, if its account is still in use");
      return;
    }
    const ReferenceTarget target = TargetsIn(*bank->second).Find(xref);
    if (target == ReferenceTarget::kThere || target == ReferenceTarget::kNotJudged) return;
    Add(company_.xrefs, "names " + Quoted(xref.kind + " " + std::string(Trim(xref.reference))) +
                            Of(xref.file_number) + " in bank " + code + Fault(target));
  });
}

}  // namespace

void VerifyReferences(ExaminedCompany& company, std::vector<CompanyProblem>* problems) {
  ReferenceCheck(company, problems).Run();
}

}  // namespace tallwick
