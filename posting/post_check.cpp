#include "posting/post_check.h"

#include <functional>
#include <span>

namespace tallwick {
namespace {

using Step = PostOutcome::Step;

// One piece of the work: what fails is reported under its step.
struct Piece {
  Step step;
  std::function<int()> work;
};

PostOutcome Failed(clsKVRData& data, Step step, int code) {
  PostOutcome outcome{code, step, {}, {}};
  if (code == engine::kErrorFieldValue) {
    outcome.field = data.LastFieldProblem().field;
    outcome.field_problem = data.LastFieldProblem().text;
  }
  return outcome;
}

PostOutcome AsOneUnit(clsKVRData& data, std::span<const Piece> pieces) {
  if (const int code = data.BeginUnit(); code != engine::kSuccess) return Failed(data, Step::kCommit, code);
  for (const Piece& piece : pieces) {
    if (const int code = piece.work(); code != engine::kSuccess) {
      PostOutcome outcome = Failed(data, piece.step, code);
      data.RollbackUnit();
      return outcome;
    }
  }
  if (const int code = data.CommitUnit(); code != engine::kSuccess) return Failed(data, Step::kCommit, code);
  return {};
}

// A reference that stands there already points where it should.
int AddXref(XrefTable& xrefs, const XrefRecord& xref) {
  return xrefs.SeekReference(xref) ? engine::kSuccess : xrefs.Add(xref, true);
}

int RemoveXref(XrefTable& xrefs, const XrefRecord& xref) {
  return xrefs.SeekReference(xref) ? xrefs.Delete() : engine::kSuccess;
}

int SetVoucherCheck(VoucherTable& vouchers, std::string_view voucher_number, const std::string& was,
                    const std::string& now) {
  if (voucher_number.empty() || !vouchers.SeekNumber(voucher_number)) return engine::kSuccess;
  VoucherRecord voucher = vouchers.Read();
  if (voucher.check_number != was) return engine::kSuccess;
  voucher.check_number = now;
  return vouchers.Update(voucher);
}

int TakeVoucher(VoucherTable& vouchers, const CheckRecord& check) {
  return SetVoucherCheck(vouchers, check.voucher_number, "", check.number);
}

int FreeVoucher(VoucherTable& vouchers, const CheckRecord& check) {
  return SetVoucherCheck(vouchers, check.voucher_number, check.number, "");
}

// On the check in its table, locked and as it was read; else a code.
int HoldUnchanged(CheckTable& checks, const CheckRecord& before) {
  if (!checks.SeekNumber(before.number)) return kChangedElsewhere;
  if (const int code = checks.Lock(); code != engine::kSuccess)
    return code == engine::kNoRecord ? kChangedElsewhere : code;
  return checks.Read() == before ? engine::kSuccess : kChangedElsewhere;
}

}  // namespace

PostOutcome PostCheck(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                      const CheckRecord& check) {
  const Piece pieces[] = {
      {Step::kCheck, [&] { return bank.checks.Add(check, true); }},
      {Step::kCrossReference,
       [&] { return AddXref(xrefs, CheckXref(check.file_number, bank_code, check.number)); }},
      {Step::kVoucher, [&] { return TakeVoucher(bank.vouchers, check); }},
  };
  return AsOneUnit(xrefs.Data(), pieces);
}

PostOutcome RewriteCheck(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                         const CheckRecord& before, const CheckRecord& after) {
  const XrefRecord old_xref = CheckXref(before.file_number, bank_code, before.number);
  const XrefRecord new_xref = CheckXref(after.file_number, bank_code, after.number);
  const bool moved = before.file_number != after.file_number;
  const bool other_voucher = before.voucher_number != after.voucher_number;
  const Piece pieces[] = {
      {Step::kCheck, [&] { return HoldUnchanged(bank.checks, before); }},
      {Step::kCheck, [&] { return bank.checks.Update(after); }},
      {Step::kCrossReference, [&] { return moved ? RemoveXref(xrefs, old_xref) : engine::kSuccess; }},
      {Step::kCrossReference, [&] { return moved ? AddXref(xrefs, new_xref) : engine::kSuccess; }},
      {Step::kVoucher, [&] { return other_voucher ? FreeVoucher(bank.vouchers, before) : engine::kSuccess; }},
      {Step::kVoucher, [&] { return other_voucher ? TakeVoucher(bank.vouchers, after) : engine::kSuccess; }},
  };
  PostOutcome outcome = AsOneUnit(xrefs.Data(), pieces);
  bank.checks.Unlock();
  return outcome;
}

PostOutcome RemoveCheck(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                        const CheckRecord& check) {
  const XrefRecord xref = CheckXref(check.file_number, bank_code, check.number);
  const Piece pieces[] = {
      {Step::kCheck, [&] { return HoldUnchanged(bank.checks, check); }},
      {Step::kCheck, [&] { return bank.checks.Delete(); }},
      {Step::kCrossReference, [&] { return RemoveXref(xrefs, xref); }},
      {Step::kVoucher, [&] { return FreeVoucher(bank.vouchers, check); }},
  };
  PostOutcome outcome = AsOneUnit(xrefs.Data(), pieces);
  bank.checks.Unlock();
  return outcome;
}

std::string PostFailureMessage(const PostOutcome& outcome, std::string_view check_number) {
  if (outcome.code == kChangedElsewhere) {
    return "Check Number " + std::string(check_number) +
           " was changed on another workstation in the meantime.  Nothing was saved: look it up again and "
           "repeat the "
           "change.";
  }
  if (!outcome.field_problem.empty()) return outcome.field_problem;
  const std::string code = "\r\nError code = " + std::to_string(outcome.code);
  if (outcome.failed == Step::kCrossReference) return "Failed to add check xrf record " + code;
  return "Failed to add check number " + std::string(check_number) + code;
}

}  // namespace tallwick
