#include "tests/load/clerk.h"

#include <unistd.h>

namespace tallwick::load {
namespace {

constexpr int kDepositDays = 400;

bool IsKept(std::string_view file) {
  return file == kPillarFile || file == kGrowingFile;
}

}  // namespace

void Clerk::Work() {
  const auto start = std::chrono::steady_clock::now();
  const std::int64_t kind = Draw(100);
  if (kind < 30) {
    PostACheck();
  } else if (kind < 45) {
    PostADeposit();
  } else if (kind < 53) {
    PostAVoucher();
  } else if (kind < 58) {
    PostAWire();
  } else if (kind < 73) {
    ChangeACheck(false);
  } else if (kind < 80) {
    ChangeACheck(true);
  } else if (kind < 86) {
    DeleteACheck();
  } else if (kind < 95) {
    ChangeADeposit(kind >= 91);
  } else {
    ChangeAVoucher();
  }
  tally_.Took(std::chrono::steady_clock::now() - start);
  // Who changes an item is asked to wait where another clerk has its record.
  for (const Box& box : place_.boxes.shown) {
    if (box.title != "Locked Record") tally_.Fail("a box: " + box.text);
  }
  place_.boxes.shown.clear();
}

bool Clerk::Done(int code, const char* what, Counter& counter) {
  if (code == engine::kSuccess) {
    ++counter;
  } else if (code == engine::kLocked) {
    ++tally_.locked;
  } else if (code == kChangedElsewhere) {
    ++tally_.changed_elsewhere;
  } else if (code == engine::kUnique) {
    ++tally_.number_taken;
  } else {
    tally_.Fail(std::string(what) + " gave " + std::to_string(code));
  }
  return code == engine::kSuccess;
}

// --- Posting: a number that another took meanwhile is tried again with the next one ---

void Clerk::PostACheck() {
  const bool growing = Draw(8) == 0;
  for (int code = engine::kUnique; code == engine::kUnique;) {
    const std::int64_t number = 1 + std::stoll("0" + place_.tables->checks.LastNumber());
    CheckRecord check =
        growing ? MakeCheck(number, 100, kGrowingFile) : MakeCheck(number, DrawCents(), DrawFile());
    if (Draw(3) == 0) check.voucher_number = DrawVoucher();
    code = PostCheck(*place_.tables, place_.Xrefs(), kBank, check).code;
    if (Done(code, "a check", tally_.posts)) ++tally_.checks[number];
  }
}

void Clerk::PostAVoucher() {
  for (int code = engine::kUnique; code == engine::kUnique;) {
    const auto bank = place_.Banks().Find(kBank);
    if (!bank) return tally_.Fail("the bank was not found");
    const std::int64_t number = bank->last_voucher + 1;
    code = PostVoucher(*place_.tables, place_.Banks(), place_.Xrefs(), kBank,
                       MakeVoucher(number, DrawCents(), DrawFile()))
               .code;
    if (Done(code, "a voucher", tally_.posts)) ++tally_.vouchers[number];
  }
}

void Clerk::PostAWire() {
  // The bank's numbers: nobody else has this one.
  // Of twelve characters, six are left for the count.
  const std::string number = std::to_string(getpid() % 100000) + "-" + std::to_string(++wires_);
  const auto wire = MakeItem<WireRecord>(number, DrawCents(), DrawFile());
  Done(PostWire(*place_.tables, place_.Xrefs(), kBank, wire).code, "a wire", tally_.posts);
}

void Clerk::PostADeposit() {
  const int key = static_cast<int>(Draw(kDepositDays * kDepositsADay));
  DepositRecord deposit = MakeDeposit(key);
  for (std::int64_t items = 1 + Draw(4); items > 0; --items) AddItem(deposit, DrawCents(), DrawFile());
  const int code = PostDeposit(*place_.tables, place_.Xrefs(), kBank, deposit).code;
  if (Done(code, "a deposit", tally_.posts)) ++tally_.deposits[key];
}

// --- Changing what stands ---

// One of those posted lately, used or not; "" where there is none.
std::string Clerk::DrawVoucher() {
  const auto bank = place_.Banks().Find(kBank);
  if (!bank || bank->last_voucher == 0) return {};
  return std::to_string(std::max<std::int64_t>(bank->last_voucher - Draw(20), 1));
}

std::optional<CheckRecord> Clerk::FindACheck() {
  const std::int64_t last = std::stoll("0" + place_.tables->checks.LastNumber());
  if (last == 0 || !place_.tables->checks.SeekNumber(std::to_string(1 + Draw(last)))) return std::nullopt;
  CheckRecord check = place_.tables->checks.Read();
  if (!IsWhole(check)) tally_.Fail("a torn check " + check.number + ": " + check.payee);
  return IsKept(check.file_number) ? std::nullopt : std::optional(check);
}

void Clerk::ChangeACheck(bool make_void) {
  const auto before = FindACheck();
  if (!before) return;
  CheckRecord after = make_void ? *before : MakeCheck(std::stoll(before->number), DrawCents(), DrawFile());
  if (make_void) {
    after.status = before->status == "V" ? "O" : "V";
    after.reason = before->status == "V" ? "" : "Lost";
    after.statement = before->status == "V" ? Period{} : Period{3, 0, 2024};
  }
  const int code = RewriteCheck(*place_.tables, place_.Xrefs(), kBank, *before, after).code;
  Done(code, "an edit of a check", make_void ? tally_.voids : tally_.edits);
}

void Clerk::DeleteACheck() {
  const auto check = FindACheck();
  if (!check || std::stoll(check->number) % kDeletedNever == 0) return;
  const int code = RemoveCheck(*place_.tables, place_.Xrefs(), kBank, *check).code;
  if (Done(code, "a deletion of a check", tally_.deletes)) --tally_.checks[std::stoll(check->number)];
}

std::optional<DepositRecord> Clerk::FindADeposit() {
  const DepositRecord drawn = MakeDeposit(static_cast<int>(Draw(kDepositDays * kDepositsADay)));
  DepositTable& deposits = place_.tables->deposits;
  // The drawn one, or the next that stands.
  if (!deposits.SeekDeposit(drawn.dated, drawn.sequence) && !deposits.Seek("DEPODATED", drawn.dated))
    return std::nullopt;
  DepositRecord deposit = deposits.Read();
  if (!IsWhole(deposit)) tally_.Fail("a torn deposit " + deposit.dated + " " + deposit.sequence);
  return IsKept(deposit.items[0].file_number) ? std::nullopt : std::optional(deposit);
}

void Clerk::ChangeADeposit(bool remove) {
  const auto before = FindADeposit();
  if (!before) return;
  if (remove) {
    const int code = RemoveDeposit(*place_.tables, place_.Xrefs(), kBank, *before).code;
    if (Done(code, "a deletion of a deposit", tally_.deletes)) --tally_.deposits[KeyOf(*before)];
    return;
  }
  DepositRecord after = MakeDeposit(KeyOf(*before));
  for (std::int64_t items = 1 + Draw(4); items > 0; --items) AddItem(after, DrawCents(), DrawFile());
  const int code = RewriteDeposit(*place_.tables, place_.Xrefs(), kBank, *before, after).code;
  Done(code, "an edit of a deposit", tally_.edits);
}

void Clerk::ChangeAVoucher() {
  VoucherTable& vouchers = place_.tables->vouchers;
  const auto bank = place_.Banks().Find(kBank);
  if (!bank || bank->last_voucher == 0) return;
  if (!vouchers.SeekNumber(std::to_string(1 + Draw(bank->last_voucher)))) return;
  const VoucherRecord before = vouchers.Read();
  if (!IsWhole(before)) tally_.Fail("a torn voucher " + before.number);
  VoucherRecord after = MakeVoucher(std::stoll(before.number), DrawCents(), DrawFile());
  after.check_number = before.check_number;
  const int code = RewriteVoucher(*place_.tables, place_.Xrefs(), kBank, before, after).code;
  Done(code, "an edit of a voucher", tally_.edits);
}

}  // namespace tallwick::load
