#include "posting/post_deposit.h"

#include <algorithm>
#include <vector>

namespace tallwick {
namespace {

using Step = PostOutcome::Step;

// The two records by which an escrow file finds a deposit item.
struct ItemReference {
  XrefRecord company;
  DepositXrefRecord bank;
  friend bool operator==(const ItemReference&, const ItemReference&) = default;
};

std::vector<ItemReference> ReferencesOf(const DepositRecord& deposit, std::string_view bank_code) {
  std::vector<ItemReference> references;
  for (int item = 1; item <= kDepositItems; ++item) {
    const std::string& file = deposit.items[static_cast<std::size_t>(item) - 1].file_number;
    if (file.empty()) continue;
    references.push_back({DepositItemXref(file, bank_code, deposit.dated, deposit.sequence, item),
                          {file, deposit.dated, deposit.sequence, std::to_string(item)}});
  }
  return references;
}

// Those of `references` that `others` lack.
std::vector<ItemReference> Without(const std::vector<ItemReference>& references,
                                   const std::vector<ItemReference>& others) {
  std::vector<ItemReference> left;
  std::copy_if(references.begin(), references.end(), std::back_inserter(left), [&](const ItemReference& one) {
    return std::find(others.begin(), others.end(), one) == others.end();
  });
  return left;
}

// The open tables that hold the references.
struct ReferenceTables {
  XrefTable& company;
  DepositXrefTable& bank;

  int Add(const std::vector<ItemReference>& references) const {
    for (const ItemReference& one : references) {
      int code = AddXref(company, one.company);
      if (code == engine::kSuccess && !bank.SeekItem(one.bank)) code = bank.Add(one.bank, true);
      if (code != engine::kSuccess) return code;
    }
    return engine::kSuccess;
  }
  int Remove(const std::vector<ItemReference>& references) const {
    for (const ItemReference& one : references) {
      int code = RemoveXref(company, one.company);
      if (code == engine::kSuccess && bank.SeekItem(one.bank)) code = bank.Delete();
      if (code != engine::kSuccess) return code;
    }
    return engine::kSuccess;
  }
};

}  // namespace

PostOutcome PostDeposit(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                        const DepositRecord& deposit, const PostGuard& guard) {
  const ReferenceTables references{xrefs, bank.deposit_xrefs};
  const PostPiece pieces[] = {
      {Step::kItem, [&] { return bank.deposits.Add(deposit, true); }},
      {Step::kCrossReference, [&] { return references.Add(ReferencesOf(deposit, bank_code)); }},
  };
  return AsOneUnit(xrefs.Data(), pieces, guard);
}

PostOutcome RewriteDeposit(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                           const DepositRecord& before, const DepositRecord& after, const PostGuard& guard) {
  const ReferenceTables references{xrefs, bank.deposit_xrefs};
  const std::vector<ItemReference> old_ones = ReferencesOf(before, bank_code);
  const std::vector<ItemReference> new_ones = ReferencesOf(after, bank_code);
  const PostPiece pieces[] = {
      {Step::kItem, [&] { return bank.deposits.Update(after); }},
      {Step::kCrossReference, [&] { return references.Remove(Without(old_ones, new_ones)); }},
      {Step::kCrossReference, [&] { return references.Add(Without(new_ones, old_ones)); }},
  };
  return ChangeAsOneUnit(bank.deposits, bank.deposits.SeekDeposit(before.dated, before.sequence), before,
                         pieces, guard);
}

PostOutcome RemoveDeposit(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                          const DepositRecord& deposit, const PostGuard& guard) {
  const ReferenceTables references{xrefs, bank.deposit_xrefs};
  const PostPiece pieces[] = {
      {Step::kItem, [&] { return bank.deposits.Delete(); }},
      {Step::kCrossReference, [&] { return references.Remove(ReferencesOf(deposit, bank_code)); }},
  };
  return ChangeAsOneUnit(bank.deposits, bank.deposits.SeekDeposit(deposit.dated, deposit.sequence), deposit,
                         pieces, guard);
}

std::string DepositFailureMessage(const PostOutcome& outcome, std::string_view name) {
  const std::string text(name);
  return FailureMessage(outcome, "Deposit " + text, "Failed to add deposit " + text, "deposit");
}

}  // namespace tallwick
