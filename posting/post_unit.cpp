#include "posting/post_unit.h"

namespace tallwick {

PostOutcome FailedPost(const clsKVRData& data, PostOutcome::Step step, int code) {
  PostOutcome outcome{code, step, {}, {}, data.AdviceFor(code)};
  if (code == engine::kErrorFieldValue) {
    outcome.field = data.LastFieldProblem().field;
    outcome.field_problem = data.LastFieldProblem().text;
  }
  return outcome;
}

PostOutcome AsOneUnit(clsKVRData& data, std::span<const PostPiece> pieces, const PostGuard& guard) {
  using Step = PostOutcome::Step;
  if (const int code = data.BeginUnit(); code != engine::kSuccess)
    return FailedPost(data, Step::kCommit, code);
  const auto undo = [&data](Step step, int code) {
    PostOutcome outcome = FailedPost(data, step, code);
    data.RollbackUnit();
    return outcome;
  };
  for (const PostPiece& piece : pieces) {
    if (const int code = piece.work(); code != engine::kSuccess) return undo(piece.step, code);
  }
  if (const int code = guard ? guard() : engine::kSuccess; code != engine::kSuccess)
    return undo(Step::kItem, code);
  if (const int code = data.CommitUnit(); code != engine::kSuccess)
    return FailedPost(data, Step::kCommit, code);
  return {};
}

int AddXref(XrefTable& xrefs, const XrefRecord& xref) {
  return xrefs.SeekReference(xref) ? engine::kSuccess : xrefs.Add(xref, true);
}

int RemoveXref(XrefTable& xrefs, const XrefRecord& xref) {
  return xrefs.SeekReference(xref) ? xrefs.Delete() : engine::kSuccess;
}

std::string FailureMessage(const PostOutcome& outcome, std::string_view item, std::string_view not_added,
                           std::string_view kind) {
  if (outcome.code == kChangedElsewhere) {
    return std::string(item) +
           " was changed on another workstation in the meantime.  Nothing was saved: look it up again and "
           "repeat the change.";
  }
  if (outcome.code == kReconciledElsewhere) {
    return std::string(item) +
           ": the account was reconciled on another workstation in the meantime.  Nothing was saved: look it "
           "up again and repeat the change.";
  }
  if (!outcome.field_problem.empty()) return outcome.field_problem;
  const std::string code = "\r\nError code = " + std::to_string(outcome.code) + AdviceFor(outcome);
  if (outcome.failed == PostOutcome::Step::kCrossReference) {
    return "Failed to add " + std::string(kind) + " xrf record " + code;
  }
  return std::string(not_added) + code;
}

std::string AdviceFor(const PostOutcome& outcome) {
  return outcome.advice.empty() ? std::string() : "\r\n" + outcome.advice;
}

}  // namespace tallwick
