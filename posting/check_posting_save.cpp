// The posting half of the check screen: tests, writing, what follows a commit, and what is said when another
// workstation was quicker.
#include "audit/audit_trail.h"
#include "core/text.h"
#include "posting/check_posting.h"
#include "posting/check_validation.h"
#include "posting/file_number.h"
#include "shell/company_tables.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

Payee PayeeOf(const CheckRecord& check) {
  return {check.payee, check.address1, check.address2, check.city_state};
}

}  // namespace

bool FrmEditChecksPost::Post() {
  if (Is(CheckMode::Kind::kViewing)) return false;
  const bool enters = Is(CheckMode::Kind::kPosting) || (Is(CheckMode::Kind::kVoiding) && !loaded_);
  return enters ? PostEntry() : PostStatus(mode_->status);
}

bool FrmEditChecksPost::PostEntry() {
  Period accounting;
  if (!MayWrite() || !MayChange() || !MayPost(&accounting)) return false;
  CheckRecord check = Record(accounting);
  if (loaded_) {
    if (renumbering_ && !MayTakeNumber(&check.number)) return false;
    if (UsesVoucher(check)) WarnOfChangedVoucher();
    return WriteChanged(check, kAuditPostCheck);
  }
  if (Is(CheckMode::Kind::kVoiding)) {
    if (!MayUseStatement(&check)) return false;
    check.status = mode_->status;
    check.reason = Trim(Text("txtCheckReason"));
  }
  WarnOfNumber();
  if (UsesVoucher(check)) WarnOfChangedVoucher();
  return WriteNew(check);
}

// What is closed now stands as it was loaded.
bool FrmEditChecksPost::MayChange() {
  if (!loaded_) return true;
  ShowWhatMayBeEntered();
  return ClosedEntriesStand(WhatIsClosed());
}

// The number that a posted check is to get: `number` becomes its stored form.
bool FrmEditChecksPost::MayTakeNumber(std::string* number) {
  if (!Passes({"txtCheckNumber", RemovalRefusal(*loaded_, bank_)})) return false;
  *number = TypedNumber();
  // Its own may be the one with leading zeros.
  if (!SeekCounted(tables_.checks, *number) || tables_.checks.Read().number == loaded_->number) return true;
  RefuseTaken(*number);
  return false;
}

bool FrmEditChecksPost::MayPost(Period* accounting) {
  if (Text("txtCheckAcctPeriod").empty() && session_.Run().default_period && !bank_.accounting.IsEmpty()) {
    SetText("txtCheckAcctPeriod", ShortForm(ProposedPeriod()));
  }
  const std::string period = Text("txtCheckAcctPeriod");
  *accounting = ParsePeriod(period, bank_.accounting.day, session_.Run());
  const bool valid = session_.Run().period_valid;
  const std::string_view new_status = Is(CheckMode::Kind::kVoiding) ? mode_->status : "O";
  const CheckCase check{Entries(),
                        loaded_ ? loaded_->status : std::string(new_status),
                        loaded_ ? loaded_->statement : Period{},
                        bank_,
                        *accounting,
                        valid,
                        At("txtCheckAcctPeriod").enabled,
                        [this] { return IsOnFile(session_, Text("txtCheckFileNumber")); }};
  if (!PassesTests(CheckTests(), check)) return false;
  if (!valid && check.period_enabled) {
    ReportInvalidPeriod(period, bank_.accounting.day, Boxes());
    MarkRefused("txtCheckAcctPeriod");
    return false;
  }
  return Passes(FirstEntryRefusal(Entries(), !loaded_ || renumbering_)) &&
         DateIsGood("txtCheckDated", "Check Date");
}

bool FrmEditChecksPost::MayUseStatement(CheckRecord* check) {
  bool valid = false;
  check->statement = PeriodIn("txtCheckStmtPeriod", &valid);
  const std::string typed(Trim(Text("txtCheckStmtPeriod")));
  if (typed.empty()) return Passes({"txtCheckStmtPeriod", "Statement Month is Missing."});
  if (!valid) return PeriodIsReadable("txtCheckStmtPeriod");
  if (IsReconciled(check->statement)) {
    return Passes(
        {"txtCheckStmtPeriod",
         "Statement period " + typed + " has been reconciled.  Enter the period of a later statement."});
  }
  if (!Passes({"txtCheckStmtPeriod", StatementRefusal(mode_->status, check->accounting, check->statement)})) {
    return false;
  }
  return Passes(
      {"txtCheckReason", TextProblem("Reason", Text("txtCheckReason"), WidthOf(kCheckLayout, "ChxsReason"))});
}

// Gives the posted check another status.
bool FrmEditChecksPost::PostStatus(std::string_view status) {
  if (!MayWrite()) return false;
  const std::string& number = Text("txtCheckNumber");
  if (!loaded_) {
    Refuse(number.empty() ? "Check Number is Required..." : "Check Number " + number + " is NOT posted.",
           "txtCheckNumber");
    return false;
  }
  if (!Passes({"txtCheckNumber", StatusRefusal(*loaded_, status, bank_)})) return false;
  CheckRecord check = *loaded_;
  check.status = status;
  if (status == "O") {
    check.statement = {};
    check.reason.clear();
    WarnOfChangedVoucher();
    return WriteChanged(check, kAuditSetOutstanding);
  }
  if (!MayUseStatement(&check)) return false;
  if (!Is(CheckMode::Kind::kClearing)) check.reason = Trim(Text("txtCheckReason"));
  return WriteChanged(check, mode_->audit_tx);
}

CheckRecord FrmEditChecksPost::Record(const Period& accounting) {
  CheckRecord check = loaded_.value_or(CheckRecord{});
  const Period kept = check.accounting;
  ApplyEntries(CheckEntryFields(), Entries(), bank_.accounting.day, &check);
  check.number = loaded_ ? loaded_->number : CountedNumber(check.number);
  check.accounting = At("txtCheckAcctPeriod").enabled ? accounting : kept;
  const bool handwritten = At("chkHandwritten").value == 1;
  if (!loaded_ || handwritten != (loaded_->status == "H")) check.status = handwritten ? "H" : "O";
  return check;
}

bool FrmEditChecksPost::WriteNew(const CheckRecord& check) {
  const PostOutcome outcome =
      PostCheck(tables_, session_.Company().xrefs, bank_code_, check, SameReconciliation());
  if (outcome.code == kReconciledElsewhere) return Post();
  if (!outcome.Done()) {
    const std::optional<bool> posted = outcome.NumberIsTaken() ? SettleTaken(check) : std::nullopt;
    if (!posted) {
      if (outcome.NumberIsTaken()) key_.Lose();
      ReportFailure(outcome, check.number);
    }
    return posted.value_or(false);
  }
  last_posted_ = check.number;
  AuditAs(mode_->audit_tx, kAuditAdd, check.number);
  KeepPayee(PayeeOf(check));
  TellPositivePay(check);
  AfterWriting();
  return true;
}

bool FrmEditChecksPost::WriteChanged(const CheckRecord& check, int audit_tx) {
  if (check == *loaded_) {
    Boxes().Inform(Caption(), "Check " + check.number + " was not added or updated.");
    return false;
  }
  const std::string status = SetsStatus() ? check.status : "";
  const PostOutcome outcome =
      RewriteCheck(tables_, session_.Company().xrefs, bank_code_, *loaded_, check, SameReconciliation());
  if (outcome.code == kReconciledElsewhere) return status.empty() ? Post() : PostStatus(status);
  if (outcome.code == kChangedElsewhere) return SettleElsewhere(status);
  if (!outcome.Done()) {
    if (outcome.NumberIsTaken()) {
      RefuseTaken(check.number);
    } else {
      ReportFailure(outcome, check.number);
    }
    return false;
  }
  last_posted_ = check.number;
  const bool new_status = check.status != loaded_->status;
  if (SetsStatus()) SetText("txtCheckStatus", StatusWord(check));
  // Who looks for the old number finds what became of it.
  if (check.number != loaded_->number) AuditAs(audit_tx, kAuditSave, loaded_->number);
  AuditAs(audit_tx, kAuditSave, check.number);
  if (!new_status) KeepPayee(PayeeOf(check));
  if (renumbering_) TellPositivePay(*loaded_, true);
  if (loaded_->status != "C") TellPositivePay(check);
  AfterWriting();
  return true;
}

// --- Another workstation was quicker ---

// The number was posted since it was proposed: the entry stays, and the next number is offered. Whether the
// check was posted under that; nullopt where it was not wanted.
std::optional<bool> FrmEditChecksPost::SettleTaken(CheckRecord check) {
  ReadNumbering();
  const std::string next = numbering_.Proposal();
  const std::string taken = "Check " + check.number;
  if (next.empty() || !(printed_ ? GivesUpPaper(taken, next) : TakesNext(taken, next))) return std::nullopt;
  key_.Set(next);
  SetText("txtCheckNumber", next);
  WarnOfNumber();
  if (printed_) {
    printed_ = false;
    SetFocus("cmdPrint");
    return false;
  }
  check.number = next;
  if (UsesVoucher(check)) WarnOfChangedVoucher();
  return WriteNew(check);
}

// The paper carries a number that is another check's: it must not leave the office.
bool FrmEditChecksPost::GivesUpPaper(const std::string& taken, const std::string& next) {
  const std::string question = taken +
                               " was posted on another workstation in the meantime, and the printed paper "
                               "carries its number.\r\nDestroy the paper.  Take the number " +
                               next + ", to be printed and posted anew?";
  return Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kYesNo, BoxAnswer::kNo}) ==
         BoxAnswer::kYes;
}

bool FrmEditChecksPost::SettleElsewhere(std::string_view status) {
  const CheckRecord before = *loaded_;
  const std::string name = "Check " + before.number;
  if (!tables_.checks.SeekNumber(before.number)) {
    loaded_.reset();
    ShowState();
    Refuse(
        name +
            " was removed on another workstation since it was loaded.  Nothing was saved: post it to enter "
            "it anew.",
        "txtCheckNumber");
    return false;
  }
  const CheckRecord theirs = tables_.checks.Read();
  if (!ReadBank()) return false;
  const std::string typed_number = Text("txtCheckNumber");
  const bool renumbers = renumbering_;
  // The voucher that was typed is watched from its look-up on.
  const auto watch_mine = [this, number = looked_up_voucher_, seen = seen_voucher_,
                           information = At("lblVoucherInformation").caption] {
    if (Text("txtCheckVoucherNumber") != number) return;
    looked_up_voucher_ = number;
    seen_voucher_ = seen;
    SetCaption("lblVoucherInformation", information);
  };
  const std::string not_over = !status.empty() ? StatusRefusal(theirs, status, bank_)
                               : renumbers     ? RemovalRefusal(theirs, bank_)
                                               : RestrictionOf(theirs, bank_);
  switch (SettleChange(
      name, [&] { ShowCheck(theirs); }, not_over)) {
    case Settled::kMine:
      if (renumbers) ShowRenumbering();
      SetText("txtCheckNumber", typed_number);
      watch_mine();
      return status.empty() ? Post() : PostStatus(status);
    case Settled::kBack:
      loaded_ = before;
      ShowState();
      if (renumbers) ShowRenumbering();
      SetText("txtCheckNumber", typed_number);
      watch_mine();
      return false;
    case Settled::kTheirs:
      break;
  }
  return false;
}

void FrmEditChecksPost::ReportFailure(const PostOutcome& outcome, std::string_view number) {
  TellFailure(outcome, FailureText(outcome, PostFailureMessage(outcome, number)),
              ControlOfField(CheckEntryFields(), outcome.field), "txtCheckNumber");
}

void FrmEditChecksPost::RefuseTaken(const std::string& number) {
  Refuse("Check " + number + " is posted already.  Type a number that is free.", "txtCheckNumber");
}

// --- After a commit ---

void FrmEditChecksPost::TellPositivePay(const CheckRecord& check, bool is_gone) {
  if (!bank_.positive_pay || ports_.positive_pay == nullptr) return;
  if (is_gone || check.status == "V") {
    ports_.positive_pay->Voided(check, bank_);
  } else if (IsOutstanding(check.status)) {
    ports_.positive_pay->Issued(check, bank_);
  }
}

void FrmEditChecksPost::AfterWriting() {
  TellPosted();
  BeginNext();
}

}  // namespace tallwick
