#include "posting/post_voucher.h"

#include "posting/item_number.h"

namespace tallwick {
namespace {

using Step = PostOutcome::Step;

int RaiseCounter(BankTable& banks, std::string_view bank_code, std::string_view voucher_number) {
  const std::optional<long long> value = NumberValue(voucher_number);
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

bool IsPosted(VoucherTable& vouchers, long long number) {
  return SeekCounted(vouchers, std::to_string(number));
}

// From the highest number down: the first one that is followed by a free one.
long long FreeBelowTheEnd(VoucherTable& vouchers) {
  long long above = kGreatestNumber + 1;
  for (bool on = vouchers.Bottom("VCHRNUMBER"); on; on = vouchers.Skip(-1)) {
    const std::int32_t record = vouchers.RecordNumber();
    const std::optional<long long> value = NumberValue(vouchers.Read().number);
    if (!value) continue;
    if (*value + 1 < above && !IsPosted(vouchers, *value + 1)) return *value + 1;
    above = *value;
    vouchers.GoTo(record);
  }
  return 1;
}

}  // namespace

std::int64_t NextVoucherNumber(VoucherTable& vouchers, std::int64_t last_used) {
  std::int64_t next = last_used + 1;
  while (next <= kGreatestNumber && IsPosted(vouchers, next)) ++next;
  return next <= kGreatestNumber ? next : FreeBelowTheEnd(vouchers);
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
