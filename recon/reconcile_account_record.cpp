// The reconcile screen's writing side: updating the bank record, taking the last reconciliation back, the
// report, and the questions on leaving.

#include <algorithm>
#include <iterator>

#include "audit/audit_trail.h"
#include "core/text.h"
#include "posting/entry_fields.h"
#include "recon/recon_screen_data.h"
#include "recon/recon_update.h"
#include "recon/reconcile_account.h"
#include "shell/rights.h"
#include "shell/transactions_switch.h"

namespace tallwick {

namespace {

// The sign takes a place of its own.
bool BankHolds(Currency balance) {
  const int width = WidthOf(kBankLayout, "BANKBEGBAL");
  return balance.Abs() <= GreatestAmount(balance.IsNegative() ? width - 1 : width);
}

}  // namespace

bool FrmReconcileAccount::MayWrite() {
  if (!TransactionsOpen(session_)) {
    Boxes().Exclaim(Caption(), kTransactionsLocked);
    return false;
  }
  if (!session_.MayUse(kRightReconcile) || !session_.MayUseBank(bank_code_)) {
    Boxes().Critical(Caption(), "You do not have the right to reconcile.  Ask the administrator for it.");
    return false;
  }
  return true;
}

void FrmReconcileAccount::Audit(int action) {
  WriteAuditTrail(AuditTargetOf(session_, bank_code_, bank_.audit_trail), *this, action, kAuditAccountEdit,
                  bank_code_);
}

// Everything is computed anew, to show what other workstations have posted since, and once more when none of
// them can post any more: what is in neither this reconciliation nor the next would be passed over.
bool FrmReconcileAccount::Update() {
  if (updated_) {
    Refuse("The bank record is updated already.", "txtStatementDate");
    return false;
  }
  const ReconResults shown = results_;
  const bool was_printed = printed_;
  if (!MayWrite() || !Compute()) return false;
  printed_ = was_printed && results_ == shown;
  if (!results_.IsBalanced()) {
    Refuse("The account is not balanced: nothing was updated.  Look for the difference of " +
               AmountText(results_.difference) + ", compute again, then update.",
           "txtBankStatementBalance");
    return false;
  }
  if (!BankHolds(results_.ending_balance)) {
    Refuse(
        "Ending Check Book Balance " + AmountText(results_.ending_balance) +
            " is more than a bank record holds as BANKBEGBAL: nothing was updated.  Look for the amount that "
            "is too large.",
        "txtBeginningCheckBookBalance");
    return false;
  }
  const std::string failure = RecordReconciliation(
      session_, &bank_, statement_, entries_, results_.ending_balance, [this] { return FiguresStand(); });
  if (!failure.empty()) {
    Boxes().Critical(Caption(), failure);
    return false;
  }
  updated_ = true;
  SetEntriesOpen(false);
  ShowBank();
  Audit(kAuditSave);
  Audit(kAuditSnapshot);
  SetCaption("lblStatus", "Updated as Reconciled for " + ShortForm(statement_) + " ...");
  session_.NotifyChanged(SessionChange::kPosted);
  return true;
}

bool FrmReconcileAccount::FiguresStand() {
  ReconFindings now(findings_->recon.Terms());
  return RunReconPasses(tables_, {}, now) == PassEnd::kDone && now.recon.ResultsFor(entries_) == results_;
}

// --- Taking back ---

void FrmReconcileAccount::ShowTakeBack() {
  SetEnabled("cmdTakeBack", !Trim(Text("txtTakeBackReason")).empty());
}

void FrmReconcileAccount::TakeBack() {
  if (!MayWrite() || !ReadBank()) return;
  const TakeBackOffer offer = OfferTakeBack(session_, bank_);
  if (!offer.refusal.empty()) return Refuse(offer.refusal, "txtTakeBackReason");
  const std::string reason(Trim(Text("txtTakeBackReason")));
  if (reason.empty()) return Refuse(std::string(kReasonNeeded), "txtTakeBackReason");
  const std::string question =
      "Take back the reconciliation of " + LongForm(bank_.reconciled) +
      " ?\r\rThe account is then reconciled through " +
      (offer.last->before.reconciled.IsEmpty() ? std::string("no date")
                                               : LongForm(offer.last->before.reconciled)) +
      ", with a check book balance of " + AmountText(offer.last->before.beginning_balance) + ".";
  if (Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kYesNo, BoxAnswer::kNo}) !=
      BoxAnswer::kYes)
    return;
  const Period taken = bank_.reconciled;
  const std::string failure = TakeBackReconciliation(session_, &bank_, *offer.last, reason);
  if (!failure.empty()) return Boxes().Critical(Caption(), failure);
  Forget();
  // The trail tells what changes between here and the save: the date and the reason.
  SetText("txtTakeBackReason", {});
  Audit(kAuditSnapshot);
  SetText("txtTakeBackReason", reason);
  ShowBank();
  Audit(kAuditSave);
  SetText("txtBeginningCheckBookBalance", ShownValue(bank_.beginning_balance));
  SetText("txtTakeBackReason", {});
  Audit(kAuditSnapshot);
  ShowTakeBack();
  SetCaption("lblStatus", "Taken back: the reconciliation of " + ShortForm(taken) + " ...");
  session_.NotifyChanged(SessionChange::kPosted);
}

// --- The report ---

std::optional<ReportDocument> FrmReconcileAccount::Report() {
  if (!findings_) return std::nullopt;
  ReconReport report;
  report.bank_code = bank_code_;
  report.bank_name = bank_name_;
  report.account_number = bank_.account_number;
  report.statement = statement_;
  report.last = SplitKey(findings_->recon.Terms().last_key);
  report.entries = entries_;
  report.results = results_;
  report.file_total = findings_->files.Sum();
  report.files = findings_->files.Open();
  report.charges_note = charges_allowed_ || !entries_.credits.IsZero() || !entries_.charges.IsZero();
  report.origin = origin_;
  return MakeReconReport(report);
}

// --- Leaving ---

bool FrmReconcileAccount::AskOnLeaving(std::string_view warning, std::string_view question, bool* yes) {
  const BoxAnswer answer =
      Boxes().Show({BoxIcon::kExclamation, Caption(), std::string(warning) + "\r\r" + std::string(question),
                    BoxButtons::kYesNoCancel, BoxAnswer::kYes});
  *yes = answer == BoxAnswer::kYes;
  return answer != BoxAnswer::kCancel;
}

bool FrmReconcileAccount::MayDropEntries() {
  const bool typed = std::any_of(
      std::begin(kReconEntryLooks), std::end(kReconEntryLooks),
      [this](const ReconEntryLook& look) { return Text(look.control) != FirstText(look.control); });
  if (!typed || !IsTypedByHand()) return true;
  return Boxes().Show({BoxIcon::kQuestion, Caption(),
                       "The figures entered are not in the bank record.\r\rClose without them ?",
                       BoxButtons::kYesNo, BoxAnswer::kNo}) == BoxAnswer::kYes;
}

bool FrmReconcileAccount::OnClose() {
  if (working_) return false;
  if (!findings_ || !results_.IsBalanced()) return MayDropEntries();
  bool yes = false;
  if (!updated_) {
    if (!AskOnLeaving("WARNING - Account Reconciled but NOT Updated...", "Update now?", &yes)) return false;
    if (yes && !Update()) return false;
  }
  return MayLeaveReport();
}

bool FrmReconcileAccount::MayLeaveReport() {
  bool yes = false;
  if (printed_) return true;
  if (!AskOnLeaving("WARNING - Account Reconciled but Report NOT Printed...", "Print now ?", &yes))
    return false;
  return !yes || Send("cmdPrint");
}

}  // namespace tallwick
