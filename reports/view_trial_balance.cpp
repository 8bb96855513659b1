#include "reports/view_trial_balance.h"

#include <algorithm>
#include <charconv>

#include "core/text.h"
#include "core/text_rows.h"
#include "reports/report_origin.h"
#include "shell/bank_select.h"
#include "shell/company_tables.h"

namespace tallwick {
namespace {

constexpr std::string_view kCaption = "Trial Balance";
constexpr TrialKind kKinds[] = {TrialKind::kAll, TrialKind::kOpen, TrialKind::kOverdrawn,
                                TrialKind::kDormant};
constexpr int kMostDays = 36500;

std::string DisplayedOr(std::string_view typed) {
  const std::optional<Date> date = ParseDisplayDate(typed);
  return date ? DisplayDate(*date) : std::string(typed);
}

// 0 for anything that is no number of days.
int DaysIn(std::string_view text) {
  text = Trim(text);
  int days = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), days);
  return result.ec == std::errc() && result.ptr == text.data() + text.size() && days <= kMostDays ? days : 0;
}

}  // namespace

FrmViewTrialBalance::FrmViewTrialBalance(Session& session, ScreenOpener& opener)
    : ReportForm("frmViewTrialBalance", session, &opener) {
  SetFormCaption(std::string(kCaption));
  Add(ControlKind::kList, "lstBanks", "&Bank");
  Add(ControlKind::kList, "lstKinds", "F&iles");
  Add(ControlKind::kDate, "txtAsOf", "Posted &Through");
  Add(ControlKind::kNumber, "txtDormantDays", "&Days without Activity").visible = false;
  Add(ControlKind::kButton, "cmdCompute", "&Compute");
  Add(ControlKind::kLabel, "lblProgress");
  Add(ControlKind::kLabel, "prgProgress").visible = false;
  Add(ControlKind::kGrid, "grdFiles", "Files");
  Add(ControlKind::kButton, "cmdOpenLedger", "Open &Ledger").enabled = false;
  for (std::string_view label : {"lblMonthNote", "lblCount", "lblReceipts", "lblDisbursements", "lblBalance"})
    Add(ControlKind::kLabel, std::string(label));
  AddRoutes({kLedgerCommand});
}

void FrmViewTrialBalance::OnOpen() {
  std::vector<std::string> banks{"All banks"};
  bank_codes_ = {""};
  for (const BankRecord& bank : UserBanks(session_)) {
    banks.push_back(bank.name + " (" + std::string(Trim(bank.code)) + ")");
    bank_codes_.emplace_back(Trim(bank.code));
  }
  SetRows("lstBanks", banks, 1);
  std::vector<std::string> kinds;
  for (TrialKind kind : kKinds) kinds.emplace_back(TrialKindName(kind));
  SetRows("lstKinds", kinds, 1);
  SetText("txtDormantDays", std::to_string(kDormantDays));
  Forget();
  SetFocus("cmdCompute");
}

// What is shown is what was asked for: another question leaves nothing on the screen.
void FrmViewTrialBalance::Forget() {
  balance_ = {};
  ShowResult("Choose what to see, and press Compute.");
}

void FrmViewTrialBalance::OnLeave(Control& control) {
  if (control.name == "txtAsOf") SetText("txtAsOf", DisplayedOr(control.text));
}

void FrmViewTrialBalance::OnChoose(Control& control) {
  if (control.name == "lstKinds") SetVisible("txtDormantDays", ChosenKind() == TrialKind::kDormant);
  if (ChosenKind() != terms_.kind || ChosenBank() != terms_.bank_code) Forget();
  if (control.name == "grdFiles") SetEnabled("cmdOpenLedger", control.selected > 0);
}

void FrmViewTrialBalance::OnChange(Control& control) {
  if (control.name == "txtAsOf" || control.name == "txtDormantDays") Forget();
}

void FrmViewTrialBalance::OnClick(Control& control) {
  if (control.name == "cmdCompute") Compute();
  if (control.name == "cmdOpenLedger") OpenLedger();
}

bool FrmViewTrialBalance::OnKey(std::string_view key) {
  if (key == "F5") {
    Compute();
    return true;
  }
  if (key == "Enter" && Focus() != nullptr && Focus()->name == "grdFiles") {
    OpenLedger();
    return true;
  }
  return ReportForm::OnKey(key);
}

const std::string& FrmViewTrialBalance::ChosenBank() {
  return bank_codes_[static_cast<std::size_t>(std::max(At("lstBanks").selected, 1)) - 1];
}

TrialKind FrmViewTrialBalance::ChosenKind() {
  return kKinds[static_cast<std::size_t>(std::max(At("lstKinds").selected, 1)) - 1];
}

bool FrmViewTrialBalance::TakeTerms() {
  const std::optional<Date> as_of = ParseDisplayDate(Text("txtAsOf"));
  if (!as_of) {
    Refuse("The date is not valid.  Type month, day and year, or leave it blank for every item posted.",
           "txtAsOf");
    return false;
  }
  TrialTerms terms;
  terms.bank_code = ChosenBank();
  terms.kind = ChosenKind();
  terms.as_of = *as_of;
  terms.dormant_days = DaysIn(Text("txtDormantDays"));
  if (terms.kind == TrialKind::kDormant && terms.dormant_days < 1) {
    Refuse("Type how many days without activity make a file dormant, 1 or more.", "txtDormantDays");
    return false;
  }
  terms_ = terms;
  return true;
}

void FrmViewTrialBalance::Compute() {
  if (!TakeTerms()) return;
  SetVisible("prgProgress", true);
  balance_ = ReadTrialBalance(session_, terms_,
                              [this](std::string_view what, std::int64_t done, std::int64_t total) {
                                return ShowProgress(what, done, total);
                              });
  SetVisible("prgProgress", false);
  SetCaption("lblProgress", {});
  ShowResult(balance_.message);
}

bool FrmViewTrialBalance::ShowProgress(std::string_view what, std::int64_t done, std::int64_t total) {
  SetCaption("lblProgress", std::string(what) + "   Press 'Esc' to cancel...");
  SetValue("prgProgress", total > 0 ? static_cast<int>(100 * std::min(done, total) / total) : 100);
  return !StopAsked();
}

void FrmViewTrialBalance::ShowResult(const std::string& message) {
  auto rows =
      std::make_shared<TextRows>(Split(TrialHeadings(terms_.kind), '|'), std::vector<std::size_t>{1, 2, 3});
  for (const TrialFile& file : balance_.files)
    rows->Add(TrialCells(file), file.Balance().IsNegative() ? "stopped" : "");
  rows->SayWhenEmpty(message);
  SetSource("grdFiles", std::move(rows));
  SetEnabled("cmdOpenLedger", false);
  const bool computed = message.empty();
  std::string counted = FileCount(balance_);
  if (!balance_.note.empty()) counted += ".  " + balance_.note;
  SetCaption("lblCount", computed ? counted : message);
  SetCaption("lblMonthNote", balance_.month_note);
  SetCaption("lblReceipts", computed ? ReportAmount(balance_.receipts) : "");
  SetCaption("lblDisbursements", computed ? ReportAmount(balance_.disbursements) : "");
  SetCaption("lblBalance", computed ? ReportAmount(balance_.Balance()) : "");
  SetPrintable(computed && !balance_.banks.empty());
}

void FrmViewTrialBalance::OpenLedger() {
  if (!CurrentFile().empty()) GoTo(kLedgerCommand);
}

std::optional<ReportDocument> FrmViewTrialBalance::Report() {
  return MakeTrialReport(balance_, terms_, OriginOf(session_));
}

}  // namespace tallwick
