// One post as one unit of work: its pieces are written together or not at all, and what failed is told by the
// piece's step. Shared by the posting steps of checks, deposits, wires and vouchers.
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

struct PostOutcome {
  enum class Step { kItem, kCrossReference, kVoucher, kCounter, kCommit };
  int code = 0;               // 0 done; else an engine code (20: the number is taken) or kChangedElsewhere
  Step failed = Step::kItem;  // where, when the code is not 0
  // When a value does not fit its field: the field, and a sentence that says why.
  std::string field;
  std::string field_problem;
  std::string advice;  // what to do about it; "" where the code says enough

  bool Done() const { return code == 0; }
};

struct PostPiece {
  PostOutcome::Step step;
  std::function<int()> work;  // 0, or the code of a failure
};

// Runs the pieces in order within one unit of work and commits it; the first failure undoes them all.
PostOutcome AsOneUnit(clsKVRData& data, std::span<const PostPiece> pieces);

// A reference that stands there already points where it should, and one that is gone needs no removal.
int AddXref(XrefTable& xrefs, const XrefRecord& xref);
int RemoveXref(XrefTable& xrefs, const XrefRecord& xref);

// Locks the table's current record (`found`: there is one) and makes sure that it is as it was read. The lock
// stays when the code is 0.
template <class Table, class Record>
int HoldUnchanged(Table& table, bool found, const Record& before) {
  if (!found) return kChangedElsewhere;
  const int code = table.Lock();
  if (code == engine::kNoRecord) return kChangedElsewhere;
  if (code != engine::kSuccess) return code;
  return table.Read() == before ? engine::kSuccess : kChangedElsewhere;
}

// The message for an outcome that is not done. `item` names the record as a sentence begins with it ("Check
// Number 10452"), `not_added` is what a failed addition says ("Failed to add check number 10452"), `kind` is
// what its cross-references are called by ("check").
std::string FailureMessage(const PostOutcome& outcome, std::string_view item, std::string_view not_added,
                           std::string_view kind);

// What to do about an outcome, as a line to be set behind its message; "" where the message says enough.
std::string AdviceFor(const PostOutcome& outcome);

}  // namespace tallwick
