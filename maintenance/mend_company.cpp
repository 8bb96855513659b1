#include "maintenance/mend_company.h"

#include <algorithm>
#include <functional>
#include <set>
#include <variant>

#include "maintenance/verify_company.h"
#include "maintenance/verify_journal.h"
#include "maintenance/verify_leftovers.h"
#include "maintenance/verify_references.h"

namespace tallwick {

namespace {

// The journal, then a record count, then an index; what is damaged in another way after that is not ours to
// mend.
constexpr int kOpenRounds = 3;

bool IsInUse(const ExaminedCompany::NotOpened& failure) {
  return failure.code == engine::kErrorOpenRefused;
}

bool IsReadOnly(const ExaminedCompany::NotOpened& failure) {
  return failure.code == engine::kErrorReadOnly;
}

// What rests on a table is judged only when the table is whole.
bool HidesOthers(const CompanyProblem& problem) {
  return std::holds_alternative<CorrectCount>(problem.remedy) ||
         std::holds_alternative<RebuildIndex>(problem.remedy) ||
         std::holds_alternative<SetJournalAside>(problem.remedy);
}

// The steps of a table's problems: one for all that its index or its memo file has.
void AddSteps(const std::vector<CompanyProblem>& problems, std::vector<MendStep>* steps) {
  for (const CompanyProblem& problem : problems) {
    if (!problem.IsMendable()) continue;
    const bool whole_table = std::holds_alternative<RebuildIndex>(problem.remedy) ||
                             std::holds_alternative<CorrectMemoEnd>(problem.remedy);
    MendStep step{problem.table, whole_table ? 0 : problem.record, DescribeRemedy(problem.remedy)};
    const bool known = std::any_of(steps->begin(), steps->end(), [&](const MendStep& other) {
      return other.table == step.table && other.record == step.record && other.text == step.text;
    });
    if (!known) steps->push_back(std::move(step));
  }
}

class Mender {
 public:
  explicit Mender(const TableHome& home) : home_(home), company_(home, ExaminedCompany::Access::kExclusive) {}

  MendReport Run() {
    if (OpenAlone()) {
      MendTables();
      MendReferences();
      RemoveLeftovers();
      ExamineAgain();
    }
    company_.Close();
    return std::move(report_);
  }

 private:
  using Problems = std::vector<CompanyProblem>;

  // Opens every table, mending what keeps one from opening. False when somebody has one.
  bool OpenAlone() {
    const Problems journal = VerifyJournal(home_);
    for (int round = 0; round < kOpenRounds; ++round) {
      not_opened_.clear();
      company_.Open(&not_opened_);
      const auto in_use = std::find_if(company_.Failures().begin(), company_.Failures().end(), IsInUse);
      if (in_use != company_.Failures().end()) {
        report_.refusal =
            in_use->table->Name() +
            " is open on another workstation, or another program keeps it or its index. Have everybody leave "
            "the program, and close what else uses the table";
        return false;
      }
      if (std::any_of(company_.Failures().begin(), company_.Failures().end(), IsReadOnly)) {
        report_.refusal =
            "The company's data may only be read here. See to the rights on the folder or to its disk";
        return false;
      }
      // Nobody is in, so the journal can be seen to as well.
      bool mended = round == 0 && MendJournal(journal);
      for (const CompanyProblem& problem : not_opened_) mended = MendClosed(problem) || mended;
      if (!mended) return true;
      company_.Close();
    }
    not_opened_.clear();
    company_.Open(&not_opened_);
    return true;
  }

  // True when the tables must be opened anew.
  bool MendJournal(const Problems& problems) {
    bool mended = false;
    for (const CompanyProblem& problem : problems) {
      if (std::holds_alternative<FinishUnits>(problem.remedy)) Done(problem, UnitsBrought());
      if (!std::holds_alternative<SetJournalAside>(problem.remedy)) continue;
      company_.Close();
      mended =
          Done(problem, home_.data.SetJournalAside(home_.folder, kSetAsideJournal, AllFiles())) || mended;
    }
    return mended;
  }

  // Opening the tables brings the waiting units to them: 0, or why it could not.
  int UnitsBrought() {
    if (home_.data.ExamineJournal(home_.folder).state != engine::JournalState::kWaiting)
      return engine::kSuccess;
    return company_.Failures().empty() ? static_cast<int>(engine::kErrorJournal)
                                       : company_.Failures().front().code;
  }

  std::vector<std::string> AllFiles() {
    std::vector<std::string> files;
    for (const TableBase* table : company_.Tables()) {
      for (const char* extension : {".DBF", ".CDX", ".FPT"}) files.push_back(table->Name() + extension);
    }
    return files;
  }

  bool MendClosed(const CompanyProblem& problem) {
    const auto table = std::find_if(company_.Tables().begin(), company_.Tables().end(),
                                    [&](const TableBase* one) { return one->Name() == problem.table; });
    if (table == company_.Tables().end()) return false;
    if (std::holds_alternative<CorrectCount>(problem.remedy))
      return Recounted(problem, home_.data.CorrectRecordCount((*table)->Path()));
    if (std::holds_alternative<RebuildIndex>(problem.remedy))
      return Done(problem, home_.data.RebuildIndex((*table)->Path(), (*table)->Layout().tags));
    return false;
  }

  bool Recounted(const CompanyProblem& problem, int code) {
    recounted_.insert(problem.table);
    return Done(problem, code);
  }

  // Keeps the step when it was done, else the problem with the reason.
  bool Done(const CompanyProblem& problem, int code) {
    if (code == engine::kSuccess) {
      AddSteps({problem}, &report_.steps);
      return true;
    }
    CompanyProblem left = problem;
    left.text = DescribeRemedy(problem.remedy) + " - failed: " + std::string(engine::error4text(code)) +
                " (" + std::to_string(code) + ")";
    failed_.push_back(std::move(left));
    return false;
  }

  void MendTables() {
    Problems problems;
    company_.VerifyTables(&problems);
    for (TableBase* table : company_.Tables()) {
      const auto find = [&]<class Wanted>(Wanted) {
        return std::find_if(problems.begin(), problems.end(), [&](const CompanyProblem& problem) {
          return problem.table == table->Name() && std::holds_alternative<Wanted>(problem.remedy);
        });
      };
      const auto memo = find(CorrectMemoEnd());
      if (memo != problems.end()) Done(*memo, home_.data.CorrectMemoEnd(table->Handle()));
      const auto index = find(RebuildIndex());
      if (index != problems.end()) Done(*index, home_.data.ReindexDatabase(table->Handle()));
    }
    Problems after;
    company_.VerifyTables(&after);  // says which tables may be trusted
  }

  // A unit of work for each table that is to be changed; a table in which one step fails stays as it was.
  // What stands in a table whose head was wrong may be no records at all: a person looks them over first.
  void MendReferences() {
    Problems problems;
    VerifyReferences(company_, &problems);
    std::erase_if(problems, [this](const CompanyProblem& problem) {
      const auto* raise = std::get_if<RaiseVoucherCounter>(&problem.remedy);
      const std::string& source =
          raise == nullptr ? problem.table : company_.by_bank.at(raise->bank_code)->vouchers.Name();
      return recounted_.contains(source);
    });
    MendInUnit(problems,
               [](const CompanyProblem& problem) { return std::holds_alternative<AddXref>(problem.remedy); });
    MendInUnit(problems, [](const CompanyProblem& problem) {
      return std::holds_alternative<RaiseVoucherCounter>(problem.remedy);
    });
    for (const auto& bank : company_.by_bank) {
      const std::string& code = bank.first;
      MendInUnit(problems, [&](const CompanyProblem& problem) {
        const auto* add = std::get_if<AddDepositXref>(&problem.remedy);
        return add != nullptr && add->bank_code == code;
      });
    }
  }

  void MendInUnit(const Problems& problems, const std::function<bool(const CompanyProblem&)>& chosen) {
    std::vector<const CompanyProblem*> work;
    for (const CompanyProblem& problem : problems)
      if (chosen(problem)) work.push_back(&problem);
    if (work.empty()) return;
    int code = home_.data.BeginUnit();
    const CompanyProblem* last = work.front();
    for (auto one = work.begin(); one != work.end() && code == engine::kSuccess; ++one) {
      last = *one;
      code = Apply(*last);
    }
    if (code == engine::kSuccess) {
      code = home_.data.CommitUnit();
    } else {
      home_.data.RollbackUnit();
    }
    if (code != engine::kSuccess) {
      Done(*last, code);
      return;
    }
    for (const CompanyProblem* one : work) Done(*one, engine::kSuccess);
  }

  int Apply(const CompanyProblem& problem) {
    if (const auto* add = std::get_if<AddXref>(&problem.remedy))
      return Added(company_.xrefs.Add(add->xref, true));
    if (const auto* add = std::get_if<AddDepositXref>(&problem.remedy)) {
      DepositXrefTable& table = company_.by_bank.at(add->bank_code)->deposit_xrefs;
      return table.IsOpen() ? Added(table.Add(add->xref, true)) : engine::kErrorOpen;
    }
    if (const auto* raise = std::get_if<RaiseVoucherCounter>(&problem.remedy)) return Raise(*raise);
    return engine::kNoRecord;
  }

  // A reference that two transactions ask for is there after the first.
  static int Added(int code) { return code == engine::kUnique ? engine::kSuccess : code; }

  int Raise(const RaiseVoucherCounter& raise) {
    std::optional<BankRecord> bank = company_.banks.Find(raise.bank_code);
    if (!bank) return engine::kNoRecord;
    bank->last_voucher = raise.number;
    return company_.banks.Update(*bank);
  }

  // Nobody rebuilds a table now: they are all ours.
  void RemoveLeftovers() {
    Problems problems;
    VerifyLeftovers(company_, home_, &problems);
    for (const CompanyProblem& problem : problems) {
      const auto* left = std::get_if<RemoveLeftover>(&problem.remedy);
      if (left == nullptr) continue;
      const bool removed = home_.files.Remove(WithBackslash(home_.folder) + left->file);
      Done(problem, removed ? engine::kSuccess : engine::kErrorRemove);
    }
  }

  // What is still there, with the reason where mending it was tried.
  void ExamineAgain() {
    report_.remains = std::move(not_opened_);
    company_.VerifyTables(&report_.remains);
    VerifyReferences(company_, &report_.remains);
    VerifyStrayTables(company_, home_, &report_.remains);
    VerifyLeftovers(company_, home_, &report_.remains);
    std::erase_if(report_.remains, [this](const CompanyProblem& problem) { return HasFailed(problem); });
    for (CompanyProblem& problem : failed_) report_.remains.push_back(std::move(problem));
  }

  bool HasFailed(const CompanyProblem& problem) const {
    return problem.IsMendable() &&
           std::any_of(failed_.begin(), failed_.end(), [&](const CompanyProblem& failed) {
             return failed.table == problem.table && failed.record == problem.record &&
                    DescribeRemedy(failed.remedy) == DescribeRemedy(problem.remedy);
           });
  }

  TableHome home_;
  ExaminedCompany company_;
  Problems not_opened_;
  Problems failed_;
  std::set<std::string> recounted_;
  MendReport report_;
};

}  // namespace

MendReport PlanMending(const TableHome& home) {
  MendReport report;
  std::vector<CompanyProblem> problems = VerifyCompany(home);
  AddSteps(problems, &report.steps);
  report.incomplete = std::any_of(problems.begin(), problems.end(), HidesOthers);
  std::erase_if(problems, [](const CompanyProblem& problem) { return problem.IsMendable(); });
  report.remains = std::move(problems);
  return report;
}

MendReport MendCompany(const TableHome& home) {
  return Mender(home).Run();
}

}  // namespace tallwick
