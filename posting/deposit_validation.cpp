#include "posting/deposit_validation.h"

#include <algorithm>

#include "core/text.h"
#include "posting/deposit_facts.h"
#include "posting/entry_problems.h"
#include "posting/file_number.h"
#include "posting/reconciled_rule.h"

namespace tallwick {
namespace {

std::string OfItem(const DepositRow& row) {
  return " for deposit item " + std::to_string(row.number) + " .";
}

DepositFinding DateIsGiven(const DepositCase& deposit) {
  if (!IsEmptyDate(deposit.dated)) return {};
  return {"Date Posted Required ...", "txtDepositDated"};
}

DepositFinding SequenceIsGiven(const DepositCase& deposit) {
  if (!Trim(deposit.sequence).empty()) return {};
  if (deposit.sequences_used) return {AllSequencesUsed(StoredDate(*deposit.date)), "txtDepositDated"};
  return {"Sequence Number Required ...", "txtDateSequence"};
}

DepositFinding RowsHaveFiles(const DepositCase& deposit) {
  for (const DepositRow& row : deposit.rows) {
    if (!row.HasAmount()) continue;
    if (row.file_number.empty()) {
      return {"File Number required" + OfItem(row), "txtFileNumbers", row.number};
    }
    if (IsVoidFile(row.file_number)) {
      return {"File Number can not be " + Quoted("VOID") + OfItem(row), "txtFileNumbers", row.number};
    }
  }
  return {};
}

DepositFinding FilesAreKnown(const DepositCase& deposit) {
  DepositFinding finding;
  finding.kind = DepositFinding::Kind::kNote;
  if (!deposit.on_file) return finding;
  for (const DepositRow& row : deposit.rows) {
    if (row.HasAmount() && CanBeFile(row.file_number) && !deposit.on_file(row.file_number)) {
      finding.message += "\r\n" + row.file_number + " is not on file" + OfItem(row);
    }
  }
  return finding;
}

DepositFinding PeriodIsGood(const DepositCase& deposit) {
  if (deposit.period_valid) return {};
  return {"Accounting Period is bad or missing.", "txtDepositAcctPeriod"};
}

// Who changes a deposit of a reconciled period is asked; it stays in its period, unless that can not be read.
// Nothing comes into a reconciled period, neither a new deposit nor one that is posted to an open one.
DepositFinding PeriodIsOpen(const DepositCase& deposit) {
  const bool closed = IsReconciled(deposit.period, deposit.bank);
  const bool was_closed = deposit.posted && IsReconciled(deposit.posted_period, deposit.bank);
  if (was_closed) {
    const Period& period = closed ? deposit.period : deposit.posted_period;
    return {ReconciledQuestion(period), "txtDepositAcctPeriod", 0, DepositFinding::Kind::kQuestion};
  }
  if (!closed) return {};
  return {"May NOT post deposits to the accounting period " + ShortForm(deposit.period) +
              " , it has been reconciled.",
          "txtDepositAcctPeriod"};
}

// --- What cannot be stored as it was typed ---

DepositFinding DateIsReadable(const DepositCase& deposit) {
  if (!deposit.date) {
    return {"Date Posted " + Quoted(Trim(deposit.dated)) + " is not a date.  Type it like 03/15/2024.",
            "txtDepositDated"};
  }
  if (deposit.posted) return {};
  return {YearProblem("Date Posted", deposit.dated, *deposit.date), "txtDepositDated"};
}

DepositFinding SequenceIsNumber(const DepositCase& deposit) {
  const std::string_view typed = Trim(deposit.sequence);
  if (deposit.posted) return {};
  if (IsAllDigits(typed) && typed.size() <= 2 && typed != "0" && typed != "00") return {};
  return {"Sequence Number " + Quoted(typed) + " is not one of 1 to " + std::to_string(kLastSequence) + ".",
          "txtDateSequence"};
}

DepositFinding RowsCanBeStored(const DepositCase& deposit) {
  for (const DepositRow& row : deposit.rows) {
    const std::string lead = "Line " + std::to_string(row.number) + " ";
    struct Entry {
      std::string_view control;
      std::string problem;
    };
    const Entry entries[] = {
        {"txtFileNumbers",
         TextProblem(lead + "File Number", row.file_number, WidthOf(kDepositLayout, "DEPOFILE1"))},
        {"txtSources", TextProblem(lead + "Source", row.source, WidthOf(kDepositLayout, "DEPOSRC1"))},
        {"txtAmounts", AmountProblem(lead + "Amount", row.amount, WidthOf(kDepositLayout, "DEPOAMT1"))},
    };
    for (const Entry& entry : entries) {
      if (!entry.problem.empty()) return {entry.problem, entry.control, row.number};
    }
    if (row.IsUsed() && !row.HasAmount()) {
      return {"Amount missing" + OfItem(row), "txtAmounts", row.number};
    }
  }
  return {};
}

// A posted deposit without lines is one to be removed.
DepositFinding HasRows(const DepositCase& deposit) {
  const bool used = std::any_of(deposit.rows.begin(), deposit.rows.end(),
                                [](const DepositRow& row) { return row.IsUsed(); });
  if (used || deposit.posted) return {};
  return {"A deposit needs at least one line.  Type a file number and an amount.", "txtFileNumbers", 1};
}

constexpr DepositTest kTests[] = {
    DateIsGiven,  SequenceIsGiven, RowsHaveFiles,    FilesAreKnown,   PeriodIsGood,
    PeriodIsOpen, DateIsReadable,  SequenceIsNumber, RowsCanBeStored, HasRows,
};

}  // namespace

bool DepositRow::HasAmount() const {
  if (amount.empty()) return false;
  const std::optional<Currency> value = Currency::ParseTyped(amount);
  return !value || !value->IsZero();
}

std::string ReconciledQuestion(const Period& period) {
  return "WARNING - Accounting period " + ShortForm(period) + " has been reconciled.  Ok to make changes?";
}

std::span<const DepositTest> DepositTests() {
  return kTests;
}

}  // namespace tallwick
