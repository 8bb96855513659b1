#include "posting/post_unit.h"

namespace tallwick {
namespace {

PostOutcome Failed(clsKVRData& data, PostOutcome::Step step, int code) {
  PostOutcome outcome{code, step, {}, {}, data.AdviceFor(code)};
  if (code == engine::kErrorFieldValue) {
    outcome.field = data.LastFieldProblem().field;
    outcome.field_problem = data.LastFieldProblem().text;
  }
  return outcome;
}

}  // namespace

PostOutcome AsOneUnit(clsKVRData& data, std::span<const PostPiece> pieces) {
  using Step = PostOutcome::Step;
  if (const int code = data.BeginUnit(); code != engine::kSuccess) return Failed(data, Step::kCommit, code);
  for (const PostPiece& piece : pieces) {
    if (const int code = piece.work(); code != engine::kSuccess) {
      PostOutcome outcome = Failed(data, piece.step, code);
      data.RollbackUnit();
      return outcome;
    }
  }
  if (const int code = data.CommitUnit(); code != engine::kSuccess) return Failed(data, Step::kCommit, code);
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
  if (!outcome.field_problem.empty()) return outcome.field_problem;
  const std::string code = "\r\nError code = " + std::to_string(outcome.code);
  if (outcome.failed == PostOutcome::Step::kCrossReference) {
    return "Failed to add " + std::string(kind) + " xrf record " + code;
  }
  return std::string(not_added) + code;
}

std::string AdviceFor(const PostOutcome& outcome) {
  return outcome.advice.empty() ? std::string() : "\r\n" + outcome.advice;
}

}  // namespace tallwick
