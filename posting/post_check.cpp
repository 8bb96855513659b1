#include "posting/post_check.h"

namespace tallwick {
namespace {

using Step = PostOutcome::Step;

// Has the voucher that the check uses name `now` where it names `was`.
int SetVoucherCheck(BankTables& bank, const CheckRecord& check, const std::string& was,
                    const std::function<std::string(const VoucherRecord&)>& now) {
  if (!UsesVoucher(check) || !bank.vouchers.SeekNumber(check.voucher_number)) return engine::kSuccess;
  VoucherRecord voucher = bank.vouchers.Read();
  if (voucher.check_number != was) return engine::kSuccess;
  voucher.check_number = now(voucher);
  return bank.vouchers.Update(voucher);
}

int TakeVoucher(BankTables& bank, const CheckRecord& check) {
  return SetVoucherCheck(bank, check, "", [&](const VoucherRecord&) { return check.number; });
}

// The first check of the voucher's file that uses it; "" for none. The one that let go of it is written by
// then.
std::string NextUser(CheckTable& checks, const VoucherRecord& voucher) {
  for (bool on = checks.FirstOfFile(voucher.file_number); on; on = checks.NextOfFile(voucher.file_number)) {
    const CheckRecord check = checks.Read();
    if (UsesVoucher(check) && check.voucher_number == voucher.number) return check.number;
  }
  return {};
}

int FreeVoucher(BankTables& bank, const CheckRecord& check) {
  return SetVoucherCheck(bank, check, check.number,
                         [&](const VoucherRecord& voucher) { return NextUser(bank.checks, voucher); });
}

// A check that goes on using its voucher passes it on to its new number.
int PassVoucherOn(BankTables& bank, const CheckRecord& before, const CheckRecord& after) {
  const bool keeps = UsesVoucher(after) && before.voucher_number == after.voucher_number;
  if (!keeps) return FreeVoucher(bank, before);
  return SetVoucherCheck(bank, before, before.number, [&](const VoucherRecord&) { return after.number; });
}

// The record under the old number goes and one under the new number comes.
int WriteOver(CheckTable& checks, bool renumbered, const CheckRecord& after) {
  if (!renumbered) return checks.Update(after);
  const int code = checks.Delete();
  return code == engine::kSuccess ? checks.Add(after, true) : code;
}

}  // namespace

bool UsesVoucher(const CheckRecord& check) {
  return !check.voucher_number.empty() && check.status != "V";
}

PostOutcome PostCheck(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                      const CheckRecord& check, const PostGuard& guard) {
  const PostPiece pieces[] = {
      {Step::kItem, [&] { return bank.checks.Add(check, true); }},
      {Step::kCrossReference,
       [&] { return AddXref(xrefs, CheckXref(check.file_number, bank_code, check.number)); }},
      {Step::kVoucher, [&] { return TakeVoucher(bank, check); }},
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
      {Step::kVoucher, [&] { return other_voucher ? PassVoucherOn(bank, before, after) : engine::kSuccess; }},
      {Step::kVoucher, [&] { return other_voucher ? TakeVoucher(bank, after) : engine::kSuccess; }},
  };
  return ChangeAsOneUnit(bank.checks, bank.checks.SeekNumber(before.number), before, pieces, guard);
}

PostOutcome RemoveCheck(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                        const CheckRecord& check, const PostGuard& guard) {
  const XrefRecord xref = CheckXref(check.file_number, bank_code, check.number);
  const PostPiece pieces[] = {
      {Step::kItem, [&] { return bank.checks.Delete(); }},
      {Step::kCrossReference, [&] { return RemoveXref(xrefs, xref); }},
      {Step::kVoucher, [&] { return FreeVoucher(bank, check); }},
  };
  return ChangeAsOneUnit(bank.checks, bank.checks.SeekNumber(check.number), check, pieces, guard);
}

std::string PostFailureMessage(const PostOutcome& outcome, std::string_view check_number) {
  const std::string number(check_number);
  return FailureMessage(outcome, "Check Number " + number, "Failed to add check number " + number, "check");
}

}  // namespace tallwick
