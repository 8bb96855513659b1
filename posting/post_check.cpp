#include "posting/post_check.h"

namespace tallwick {
namespace {

using Step = PostOutcome::Step;

int SetVoucherCheck(VoucherTable& vouchers, std::string_view voucher_number, const std::string& was,
                    const std::string& now) {
  if (!vouchers.SeekNumber(voucher_number)) return engine::kSuccess;
  VoucherRecord voucher = vouchers.Read();
  if (voucher.check_number != was) return engine::kSuccess;
  voucher.check_number = now;
  return vouchers.Update(voucher);
}

// A voided check pays nobody: its voucher is free for another one.
bool UsesVoucher(const CheckRecord& check) {
  return !check.voucher_number.empty() && check.status != "V";
}

int TakeVoucher(VoucherTable& vouchers, const CheckRecord& check) {
  return UsesVoucher(check) ? SetVoucherCheck(vouchers, check.voucher_number, "", check.number)
                            : engine::kSuccess;
}

int FreeVoucher(VoucherTable& vouchers, const CheckRecord& check) {
  return UsesVoucher(check) ? SetVoucherCheck(vouchers, check.voucher_number, check.number, "")
                            : engine::kSuccess;
}

// The record under the old number goes and one under the new number comes.
int WriteOver(CheckTable& checks, bool renumbered, const CheckRecord& after) {
  if (!renumbered) return checks.Update(after);
  const int code = checks.Delete();
  return code == engine::kSuccess ? checks.Add(after, true) : code;
}

}  // namespace

PostOutcome PostCheck(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                      const CheckRecord& check, const PostGuard& guard) {
  const PostPiece pieces[] = {
      {Step::kItem, [&] { return bank.checks.Add(check, true); }},
      {Step::kCrossReference,
       [&] { return AddXref(xrefs, CheckXref(check.file_number, bank_code, check.number)); }},
      {Step::kVoucher, [&] { return TakeVoucher(bank.vouchers, check); }},
  };
  return AsOneUnit(xrefs.Data(), pieces, guard);
}

PostOutcome RewriteCheck(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                         const CheckRecord& before, const CheckRecord& after, const PostGuard& guard) {
  const XrefRecord old_xref = CheckXref(before.file_number, bank_code, before.number);
  const XrefRecord new_xref = CheckXref(after.file_number, bank_code, after.number);
  const bool renumbered = before.number != after.number;
  const bool moved = renumbered || before.file_number != after.file_number;
  const bool other_voucher = renumbered || before.voucher_number != after.voucher_number ||
                             UsesVoucher(before) != UsesVoucher(after);
  const PostPiece pieces[] = {
      {Step::kItem, [&] { return WriteOver(bank.checks, renumbered, after); }},
      {Step::kCrossReference, [&] { return moved ? RemoveXref(xrefs, old_xref) : engine::kSuccess; }},
      {Step::kCrossReference, [&] { return moved ? AddXref(xrefs, new_xref) : engine::kSuccess; }},
      {Step::kVoucher, [&] { return other_voucher ? FreeVoucher(bank.vouchers, before) : engine::kSuccess; }},
      {Step::kVoucher, [&] { return other_voucher ? TakeVoucher(bank.vouchers, after) : engine::kSuccess; }},
  };
  return ChangeAsOneUnit(bank.checks, bank.checks.SeekNumber(before.number), before, pieces, guard);
}

PostOutcome RemoveCheck(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                        const CheckRecord& check, const PostGuard& guard) {
  const XrefRecord xref = CheckXref(check.file_number, bank_code, check.number);
  const PostPiece pieces[] = {
      {Step::kItem, [&] { return bank.checks.Delete(); }},
      {Step::kCrossReference, [&] { return RemoveXref(xrefs, xref); }},
      {Step::kVoucher, [&] { return FreeVoucher(bank.vouchers, check); }},
  };
  return ChangeAsOneUnit(bank.checks, bank.checks.SeekNumber(check.number), check, pieces, guard);
}

std::string PostFailureMessage(const PostOutcome& outcome, std::string_view check_number) {
  const std::string number(check_number);
  return FailureMessage(outcome, "Check Number " + number, "Failed to add check number " + number, "check");
}

}  // namespace tallwick
