#include "maintenance/verify_company.h"

#include <algorithm>
#include <variant>

#include "core/text.h"
#include "maintenance/stray_tables.h"
#include "maintenance/verify_journal.h"
#include "maintenance/verify_leftovers.h"
#include "maintenance/verify_numbers.h"
#include "maintenance/verify_references.h"
#include "maintenance/verify_statuses.h"
#include "maintenance/verify_table.h"
#include "shell/lost_table.h"
#include "tables/bank_code.h"

namespace tallwick {

ExaminedCompany::ExaminedCompany(const TableHome& home, Access access)
    : banks(home),
      xrefs(home),
      home_(home),
      access_(access),
      notes_(home),
      agent_(home),
      users_(home),
      user_banks_(home) {}

namespace {

CompanyProblem MissingProblem(const TableBase& table) {
  return {
      table.Name(),
      0,
      "is missing.  Restore it from a copy before anybody works on: an empty one would be made in its place",
      {}};
}

}  // namespace

void ExaminedCompany::OpenOne(TableBase& table, const std::string& bank_code,
                              std::vector<CompanyProblem>* problems) {
  if (!table.Exists(bank_code)) {
    if (!table.Layout().per_bank && !WhyLost(home_, table.Name()).empty())
      problems->push_back(MissingProblem(table));
    return;
  }
  tables_.push_back(&table);
  const int opened = table.OpenQuietly(bank_code, access_ == Access::kExclusive);
  if (opened > 0) return;
  failures_.push_back({&table, opened});
  CompanyProblem problem = NotOpenedProblem(home_.files, table, opened);
  // The suite's tables may have other tags than those that we know of.
  if (table.Layout().of_suite && std::holds_alternative<RebuildIndex>(problem.remedy)) {
    problem.remedy = {};
    problem.text += ".  " + SuiteIndexAdvice(table.Name());
  }
  problems->push_back(std::move(problem));
}

void ExaminedCompany::Open(std::vector<CompanyProblem>* problems) {
  for (TableBase* table : {static_cast<TableBase*>(&banks), static_cast<TableBase*>(&xrefs),
                           static_cast<TableBase*>(&notes_), static_cast<TableBase*>(&agent_),
                           static_cast<TableBase*>(&users_), static_cast<TableBase*>(&user_banks_)})
    OpenOne(*table, {}, problems);
  if (!banks.IsOpen()) return;
  // In record order: the bank table's index may be what is damaged.
  for (bool on = banks.Top(""); on; on = banks.Skip()) {
    if (home_.data.IsRecordDeleted(banks.Handle())) continue;
    const std::string code = TrimmedBankCode(banks.Read().code);
    if (!BankCodeProblem(code).empty()) {
      problems->push_back({banks.Name(),
                           banks.RecordNumber(),
                           "the bank's code " + Quoted(code) +
                               " can name no tables: give the bank another code in its record",
                           {}});
      continue;
    }
    by_bank.emplace(code, std::make_unique<BankTables>(home_));
  }
  for (auto& [code, bank] : by_bank) OpenBank(*bank, code, problems);
}

// A bank that was never opened has no tables; one that has some has lost the others.
void ExaminedCompany::OpenBank(BankTables& bank, const std::string& code,
                               std::vector<CompanyProblem>* problems) {
  const auto all = bank.All();
  const bool has_any = std::any_of(all.begin(), all.end(), [&](TableBase* one) { return one->Exists(code); });
  for (TableBase* table : all) {
    if (has_any && !table->Exists(code)) problems->push_back(MissingProblem(*table));
    OpenOne(*table, code, problems);
  }
}

void ExaminedCompany::Close() {
  for (TableBase* table : tables_) table->Close();
  tables_.clear();
  failures_.clear();
  damaged_.clear();
  by_bank.clear();
}

void ExaminedCompany::VerifyTables(std::vector<CompanyProblem>* problems) {
  damaged_.clear();
  for (TableBase* table : tables_) {
    if (!table->IsOpen()) continue;
    for (CompanyProblem& problem : VerifyTable(table->Data(), table->Handle(), table->Name())) {
      if (std::holds_alternative<RebuildIndex>(problem.remedy)) damaged_.insert(table);
      problems->push_back(std::move(problem));
    }
    // With duplicates in a unique tag or records left out, seeks and walks would mislead without being
    // damaged.
    if (const std::string tag = table->OtherTag(); !tag.empty() && !table->Layout().of_suite) {
      damaged_.insert(table);
      problems->push_back(
          {table->Name(),
           0,
           "Tag " + tag +
               " is not made as this program makes it: have \"Update Database Versions\" build "
               "the index anew",
           {}});
    }
    VerifyNumbers(*table, problems);
  }
  for (auto& [code, bank] : by_bank) {
    const std::optional<BankRecord> record = IsTrusted(banks) ? banks.Find(code) : std::nullopt;
    VerifyStatuses(*bank, record ? record->reconciled : Period{}, problems);
  }
}

void VerifyStrayTables(const ExaminedCompany& company, const TableHome& home,
                       std::vector<CompanyProblem>* problems) {
  if (!company.banks.IsOpen()) return;
  std::vector<std::string> codes;
  for (const auto& [code, bank] : company.by_bank) codes.push_back(code);
  for (const StrayTable& stray : FindStrayTables(home, codes)) {
    const std::string records = "holds records (" + std::to_string(stray.records) + ")";
    const std::string text =
        stray.MayBeOfABank()
            ? records + " of a bank " + Quoted(stray.bank_code) +
                  " that the bank table does not have.  Restore the copy in which the bank is, or "
                  "have its tables carried out of the folder before a bank gets this code"
            : records + ", but no bank can have the code " + Quoted(stray.bank_code) +
                  ": it looks like a stray copy of a table.  Have it carried out of the folder";
    problems->push_back({stray.name, 0, text, {}});
  }
}

std::vector<CompanyProblem> VerifyCompany(const TableHome& home) {
  std::vector<CompanyProblem> problems = VerifyJournal(home);
  ExaminedCompany company(home, ExaminedCompany::Access::kShared);
  company.Open(&problems);
  company.VerifyTables(&problems);
  VerifyReferences(company, &problems);
  VerifyStrayTables(company, home, &problems);
  VerifyLeftovers(company, home, &problems);
  return problems;
}

}  // namespace tallwick
