// The posting half of the check screen: tests, writing, and what follows a commit.
#include "audit/audit_trail.h"
#include "core/text.h"
#include "posting/check_posting.h"
#include "posting/check_validation.h"
#include "posting/file_number.h"
#include "shell/company_tables.h"

namespace tallwick {

bool FrmEditChecksPost::Post() {
  Period accounting;
  if (!ReadBank() || !MayPost(&accounting)) return false;
  const CheckRecord check = Record(accounting);
  if (loaded_) return WriteChanged(check);
  WarnOfNumber();
  return WriteNew(check);
}

bool FrmEditChecksPost::MayPost(Period* accounting) {
  if (Text("txtCheckAcctPeriod").empty() && session_.Run().default_period && !bank_.accounting.IsEmpty()) {
    SetText("txtCheckAcctPeriod", ShortForm(bank_.accounting));
  }
  const std::string period = Text("txtCheckAcctPeriod");
  *accounting = ParsePeriod(period, bank_.accounting.day, session_.Run());
  const bool valid = session_.Run().period_valid;
  const CheckCase check{Entries(),
                        loaded_ ? loaded_->status : "O",
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
  return Passes(FirstEntryRefusal(Entries()));
}

CheckRecord FrmEditChecksPost::Record(const Period& accounting) {
  CheckRecord check = loaded_.value_or(CheckRecord{});
  const Period kept = check.accounting;
  ApplyEntries(CheckEntryFields(), Entries(), bank_.accounting.day, &check);
  check.accounting = At("txtCheckAcctPeriod").enabled ? accounting : kept;
  const bool open_status = check.status.empty() || check.status == "O" || check.status == "H";
  if (open_status) check.status = At("chkHandwritten").value == 1 ? "H" : "O";
  return check;
}

bool FrmEditChecksPost::WriteNew(const CheckRecord& check) {
  const PostOutcome outcome = PostCheck(tables_, session_.Company().xrefs, bank_code_, check);
  if (!outcome.Done()) {
    ReportFailure(outcome, check.number);
    return false;
  }
  last_posted_ = check.number;
  Audit(kAuditAdd, check.number);
  AfterWriting();
  return true;
}

bool FrmEditChecksPost::WriteChanged(const CheckRecord& check) {
  if (check == *loaded_) {
    Boxes().Inform(Caption(), "Check " + check.number + " was not added or updated.");
    return false;
  }
  const PostOutcome outcome = RewriteCheck(tables_, session_.Company().xrefs, bank_code_, *loaded_, check);
  if (!outcome.Done()) {
    ReportFailure(outcome, check.number);
    return false;
  }
  last_posted_ = check.number;
  Audit(kAuditSave, check.number);
  AfterWriting();
  return true;
}

void FrmEditChecksPost::ReportFailure(const PostOutcome& outcome, std::string_view number) {
  const std::string_view field = ControlOfField(CheckEntryFields(), outcome.field);
  const std::string message = FailureText(outcome, PostFailureMessage(outcome, number));
  Refuse(message, field.empty() ? "txtCheckNumber" : field);
}

void FrmEditChecksPost::AfterWriting() {
  register_->Refresh();
  RowsChanged("lstCheckNumbers");
  session_.NotifyChanged(SessionChange::kPosted);
  BeginNewCheck();
  SetFocus("txtCheckPayee");
}

}  // namespace tallwick
