// One post as one unit of work: its pieces are written together or not at all, and what failed is told by the
// piece's step. Shared by the posting steps of checks, deposits, wires and vouchers.
//
// A unit keeps every other workstation of the company from writing, so nobody is asked anything within it: a
// person is asked to wait for the item's own record before it begins, and a record that is met locked within
// it ends it.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "tables/xref_table.h"

namespace tallwick {

// Result of a rewrite or removal beside the engine's codes: another workstation has changed or removed the
// record since it was read. Nothing was written.
inline constexpr int kChangedElsewhere = 1001;
// Result of a post whose bank was reconciled, or taken back to an earlier reconciliation, since its periods
// were tested. Nothing was written.
inline constexpr int kReconciledElsewhere = 1002;
// Result of a unit that its owner has called off, who also says why. Nothing was written.
inline constexpr int kCalledOff = 1003;

struct PostOutcome {
  enum class Step { kItem, kCrossReference, kVoucher, kCounter, kCommit };
  int code = 0;               // 0 done; else an engine code (20: the number is taken) or one of those above
  Step failed = Step::kItem;  // where, when the code is not 0
  // When a value does not fit its field: the field, and a sentence that says why.
  std::string field;
  std::string field_problem;
  std::string advice;  // what to do about it; "" where the code says enough

  bool Done() const { return code == 0; }
  bool NumberIsTaken() const { return code == engine::kUnique && failed == Step::kItem; }
};

struct PostPiece {
  PostOutcome::Step step;
  std::function<int()> work;  // 0, or the code of a failure
};

// What is looked at once more behind the pieces, when no other workstation can write before the commit: 0, or
// the code with which the post fails. None: nothing.
using PostGuard = std::function<int()>;

// Runs the pieces in order within one unit of work, then the guard, and commits it; the first failure undoes
// them all.
PostOutcome AsOneUnit(clsKVRData& data, std::span<const PostPiece> pieces, const PostGuard& guard = {});

// A reference that stands there already points where it should, and one that is gone needs no removal.
int AddXref(XrefTable& xrefs, const XrefRecord& xref);
int RemoveXref(XrefTable& xrefs, const XrefRecord& xref);

PostOutcome FailedPost(const clsKVRData& data, PostOutcome::Step step, int code);

// The same for pieces that change the table's current record (`found`: there is one): it is locked before,
// which asks the user to wait where another workstation has it, and must be as it was read.
template <class Table, class Record>
PostOutcome ChangeAsOneUnit(Table& table, bool found, const Record& before, std::span<const PostPiece> pieces,
                            const PostGuard& guard) {
  int code = found ? table.Lock() : kChangedElsewhere;
  if (code == engine::kNoRecord) code = kChangedElsewhere;
  if (code != engine::kSuccess) return FailedPost(table.Data(), PostOutcome::Step::kItem, code);
  PostOutcome outcome = table.Read() == before
                            ? AsOneUnit(table.Data(), pieces, guard)
                            : FailedPost(table.Data(), PostOutcome::Step::kItem, kChangedElsewhere);
  table.Unlock();
  return outcome;
}

// The message for an outcome that is not done, with what to do about it. `item` names the record as a
// sentence begins with it ("Check Number 10452"), `not_added` is what a failed addition says ("Failed to add
// check number 10452"), `kind` is what its cross-references are called by ("check").
std::string FailureMessage(const PostOutcome& outcome, std::string_view item, std::string_view not_added,
                           std::string_view kind);

// What to do about an outcome, as a line to be set behind its message; "" where the message says enough.
std::string AdviceFor(const PostOutcome& outcome);

}  // namespace tallwick
