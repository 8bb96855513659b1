#include "posting/post_voucher.h"

#include "core/text.h"

namespace tallwick {
namespace {

using Step = PostOutcome::Step;

constexpr std::size_t kMostDigits = 12;

int RaiseCounter(BankTable& banks, std::string_view bank_code, std::string_view voucher_number) {
  const std::optional<std::int64_t> value = VoucherNumberValue(voucher_number);
  if (!value) return engine::kSuccess;
  std::optional<BankRecord> bank = banks.Find(bank_code);
  if (!bank) return engine::kNoRecord;
  if (bank->last_voucher >= *value) return engine::kSuccess;
  if (const int code = banks.Lock(); code != engine::kSuccess) return code;
  // What another workstation has written since stays.
  BankRecord now = banks.Read();
  int code = engine::kSuccess;
  if (now.last_voucher < *value) {
    now.last_voucher = *value;
    code = banks.Update(now);
  }
  banks.Unlock();
  return code;
}

}  // namespace

std::optional<std::int64_t> VoucherNumberValue(std::string_view number) {
  number = Trim(number);
  if (!IsAllDigits(number) || number.size() > kMostDigits) return std::nullopt;
  std::int64_t value = 0;
  for (char digit : number) value = value * 10 + (digit - '0');
  return value;
}

std::int64_t NextVoucherNumber(VoucherTable& vouchers, std::int64_t last_used) {
  std::int64_t next = last_used + 1;
  while (vouchers.SeekNumber(std::to_string(next))) ++next;
  return next;
}

PostOutcome PostVoucher(BankTables& bank, BankTable& banks, XrefTable& xrefs, std::string_view bank_code,
                        const VoucherRecord& voucher, const PostGuard& guard) {
  const PostPiece pieces[] = {
      {Step::kItem, [&] { return bank.vouchers.Add(voucher, true); }},
      {Step::kCrossReference,
       [&] { return AddXref(xrefs, VoucherXref(voucher.file_number, bank_code, voucher.number)); }},
      {Step::kCounter, [&] { return RaiseCounter(banks, bank_code, voucher.number); }},
  };
  return AsOneUnit(xrefs.Data(), pieces, guard);
}

PostOutcome RewriteVoucher(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                           const VoucherRecord& before, const VoucherRecord& after, const PostGuard& guard) {
  const XrefRecord old_xref = VoucherXref(before.file_number, bank_code, before.number);
  const XrefRecord new_xref = VoucherXref(after.file_number, bank_code, after.number);
  const bool moved = before.file_number != after.file_number;
  const PostPiece pieces[] = {
      {Step::kItem, [&] { return bank.vouchers.Update(after); }},
      {Step::kCrossReference, [&] { return moved ? RemoveXref(xrefs, old_xref) : engine::kSuccess; }},
      {Step::kCrossReference, [&] { return moved ? AddXref(xrefs, new_xref) : engine::kSuccess; }},
  };
  return ChangeAsOneUnit(bank.vouchers, bank.vouchers.SeekNumber(before.number), before, pieces, guard);
}

PostOutcome RemoveVoucher(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                          const VoucherRecord& voucher, const PostGuard& guard) {
  const XrefRecord xref = VoucherXref(voucher.file_number, bank_code, voucher.number);
  const PostPiece pieces[] = {
      {Step::kItem, [&] { return bank.vouchers.Delete(); }},
      {Step::kCrossReference, [&] { return RemoveXref(xrefs, xref); }},
  };
  return ChangeAsOneUnit(bank.vouchers, bank.vouchers.SeekNumber(voucher.number), voucher, pieces, guard);
}

std::string VoucherFailureMessage(const PostOutcome& outcome, std::string_view voucher_number) {
  const std::string number(voucher_number);
  return FailureMessage(outcome, "Voucher Number " + number, "Failed to add voucher number " + number,
                        "voucher");
}

}  // namespace tallwick
