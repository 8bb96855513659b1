// Holds a whole company together: the journal, every tag of every table against its records, every
// cross-reference against its transaction and back, and the voucher counters.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "maintenance/verify_problem.h"
#include "tables/agent_table.h"
#include "tables/bank_table.h"
#include "tables/bank_tables.h"
#include "tables/notes_table.h"
#include "tables/users_table.h"

namespace tallwick {

// Changes nothing. A table that does not open is a problem like others; one that is missing counts as empty.
std::vector<CompanyProblem> VerifyCompany(const TableHome& home);

class ExaminedCompany;

// Tables with records of banks that the bank table does not have. Nothing while that does not open.
void VerifyStrayTables(const ExaminedCompany& company, const TableHome& home,
                       std::vector<CompanyProblem>* problems);

// The tables of a company, opened as far as they open, without a word to the user.
class ExaminedCompany {
 public:
  enum class Access { kShared, kExclusive };
  ExaminedCompany(const TableHome& home, Access access);
  ExaminedCompany(const ExaminedCompany&) = delete;
  ExaminedCompany& operator=(const ExaminedCompany&) = delete;

  // Opens everything that exists. What does not open is added to `problems`.
  void Open(std::vector<CompanyProblem>* problems);
  void Close();
  struct NotOpened {
    TableBase* table = nullptr;
    int code = 0;  // the engine's
  };
  const std::vector<NotOpened>& Failures() const { return failures_; }
  // Every table that exists, whether it opened or not.
  const std::vector<TableBase*>& Tables() const { return tables_; }
  // Examines each open table by itself; those whose index is damaged are not trusted afterwards.
  void VerifyTables(std::vector<CompanyProblem>* problems);
  // True when a walk or a seek in the table tells the truth.
  bool IsTrusted(const TableBase& table) const { return table.IsOpen() && !damaged_.contains(&table); }

  BankTable banks;
  XrefTable xrefs;
  std::map<std::string, std::unique_ptr<BankTables>> by_bank;  // by trimmed code

 private:
  void OpenBank(BankTables& bank, const std::string& code, std::vector<CompanyProblem>* problems);
  void OpenOne(TableBase& table, const std::string& bank_code, std::vector<CompanyProblem>* problems);

  TableHome home_;
  Access access_;
  NotesTable notes_;
  AgentTable agent_;
  UsersTable users_;
  UserBanksTable user_banks_;
  std::vector<TableBase*> tables_;
  std::vector<NotOpened> failures_;
  std::set<const TableBase*> damaged_;
};

}  // namespace tallwick
