#include "posting/check_posting.h"

#include <algorithm>

#include "audit/audit_trail.h"
#include "shell/company_tables.h"
#include "shell/rights.h"

namespace tallwick {
namespace {

constexpr PostingScreen kScreen{"frmEditChecksPost", "Post Checks - ", "Bank ID Code no longer valid...",
                                kAuditPostCheck,     kRightPostChecks, "lblCheckStatus"};

constexpr PayeeEntries kPayeeEntries{"txtCheckPayee", "txtCheckAddr1", "txtCheckAddr2", "txtCheckCityState"};

constexpr std::string_view kNumber = "txtCheckNumber";

struct ButtonText {
  std::string_view name;
  std::string_view caption;
};
constexpr ButtonText kButtons[] = {
    {"cmdOk", "P&ost Check"},
    {"cmdSetOutstanding", "Set Outstandin&g"},
    {"cmdPrint", "Print"},
    {"cmdDone", "Do&ne"},
    {"cmdCalendar", "Calendar"},
    {"cmdListAll", "&List All"},
    {"cmdListOutstanding", "&List Outstanding"},
    {"cmdListCleared", "&List Cleared"},
    {"cmdListVoids", "&List Voids"},
    {"cmdListStopPayment", "&List Stop Payment"},
};

}  // namespace

FrmEditChecksPost::FrmEditChecksPost(Session& session, ScreenOpener& opener, CheckMode::Kind mode,
                                     const CheckPorts& ports)
    : PayeePostingForm(session, kScreen, &opener, kPayeeEntries),
      mode_(&CheckModeOf(mode)),
      ports_(ports),
      register_(std::make_shared<CheckRegister>(session.Home())) {
  AddControls();
  AddCommands();
}

void FrmEditChecksPost::AddControls() {
  for (const CheckEntryField& entry : CheckEntryFields()) {
    Add(entry.kind, std::string(entry.control), std::string(entry.caption));
  }
  Add(ControlKind::kCheck, "chkHandwritten", "Hand&written");
  Add(ControlKind::kPeriod, "txtCheckStmtPeriod", "&Statement Period");
  Add(ControlKind::kText, "txtCheckReason", "&Reason");
  Add(ControlKind::kText, "txtCheckStatus", "Status").visible = false;
  for (std::string_view label : {"lblLastCheckNumber", "lblHighestCheckNumber", "lblCheckStatus",
                                 "lblVoucherInformation", "lblEditMessage"}) {
    Add(ControlKind::kLabel, std::string(label));
  }
  Add(ControlKind::kGrid, "lstCheckNumbers", "Checks");
  AddPayeeLookUp();
  AddFileLookUp("txtCheckFileNumber");
  for (const ButtonText& button : kButtons) {
    Add(ControlKind::kButton, std::string(button.name), std::string(button.caption));
  }
}

void FrmEditChecksPost::OnOpen() {
  SetSource("lstCheckNumbers", register_);
  PayeePostingForm::OnOpen();
  if (const std::string why = ports_.printer != nullptr ? ports_.printer->WhyNot() : ""; !why.empty()) {
    Boxes().Exclaim(Caption(), why);
  }
  SwitchTo(*mode_);
}

void FrmEditChecksPost::OnEnter(Control& control) {
  if (control.name == kNumber && !loaded_) ReadNumbering();
}

void FrmEditChecksPost::OnLeave(Control& control) {
  for (const CheckEntryField& entry : CheckEntryFields()) {
    if (entry.control == control.name) {
      SetText(control.name, FormattedEntry(entry.kind, control.text, bank_.accounting.day));
    }
  }
  if (control.name == "txtCheckStmtPeriod") {
    SetText(control.name, FormattedEntry(control.kind, control.text, bank_.accounting.day));
  }
  PayeePostingForm::OnLeave(control);
  if (control.name == kNumber) LookUpNumber();
  if (control.name == "txtCheckVoucherNumber") LookUpVoucher();
}

void FrmEditChecksPost::OnChoose(Control& control) {
  PayeePostingForm::OnChoose(control);
  if (control.name != "lstCheckNumbers" || control.selected == 0) return;
  const std::string number = register_->NumberAt(static_cast<std::size_t>(control.selected) - 1);
  if (number.empty()) {
    RefreshRegister();
  } else if (MayLeaveCheck()) {
    OpenNumber(number);
  }
}

void FrmEditChecksPost::OnClick(Control& control) {
  if (control.name == "cmdOk") Post();
  if (control.name == "cmdSetOutstanding") PostStatus("O");
  if (control.name == "cmdPrint") Print();
  if (control.name == "cmdDone") Close();
  if (!ListCommand(control.name)) PayeePostingForm::OnClick(control);
}

// A number that was typed is looked up; that of a check to be renumbered is taken.
bool FrmEditChecksPost::EnterGoesOn() {
  const bool at_number = Focus() == &At(kNumber);
  return at_number && !renumbering_ && !key_.Stands(Text(kNumber));
}

bool FrmEditChecksPost::OnKey(std::string_view key) {
  const Control* focus = Focus();
  const std::string_view at = focus != nullptr ? std::string_view(focus->name) : "";
  if (key == "F4" && at == "txtCheckVoucherNumber") {
    OfferVoucher();
    return true;
  }
  // A check is seen before it changes: the key that posts shows it where its number was typed just now.
  const bool typed = EnterGoesOn();
  if (typed && (key == "Enter" || (key == "Ctrl+Enter" && ShowsOther(Text(kNumber))))) {
    Leave();
    GoToFirst();
    return true;
  }
  if (key == "Ctrl+P" && At("cmdPrint").enabled) {
    Leave();
    Print();
    return true;
  }
  if (key == "Esc" && !LooksUp() && register_->IsSorting()) return OrderCommand("mnuViewNumber");
  if (key == "Esc" && !LooksUp() && renumbering_) {
    SetText(kNumber, loaded_->number);
    SetCaption("lblHighestCheckNumber", {});
    ShowState();
    return true;
  }
  return PayeePostingForm::OnKey(key);
}

void FrmEditChecksPost::RefreshRegister() {
  register_->Refresh();
  RowsChanged("lstCheckNumbers");
}

// --- Changes that are not posted yet ---

bool FrmEditChecksPost::IsEntry(const Control& control) const {
  if (control.name == "chkHandwritten") return true;
  if (control.name == "txtCheckStmtPeriod" || control.name == "txtCheckReason") return SetsStatus();
  if (control.name == "txtRemittanceAdvice") return !loaded_;  // a posted check does not hold it
  const std::span<const CheckEntryField> entries = CheckEntryFields();
  return control.name != kNumber &&
         std::any_of(entries.begin(), entries.end(),
                     [&](const CheckEntryField& entry) { return entry.control == control.name; });
}

void FrmEditChecksPost::RestoreKey() {
  if (renumbering_) return;
  SetText(kNumber, key_.Get());
  key_.PutBack();
}

bool FrmEditChecksPost::MayLeaveCheck() {
  if (!printed_) return MayDropChanges();
  const BoxAnswer answer =
      Boxes().Show({BoxIcon::kQuestion, Caption(),
                    "WARNING - Printed a Check but have NOT posted it.\r\nPost the Check Now?",
                    BoxButtons::kYesNo, BoxAnswer::kYes});
  if (answer == BoxAnswer::kNo) {
    printed_ = false;
    return true;
  }
  RestoreKey();
  return Post();
}

// --- Printing ---

// Of a posted check nothing else goes to paper than what is posted.
bool FrmEditChecksPost::PostedCheckStands() {
  if (!loaded_) return true;
  if (IsChanged()) {
    Boxes().Critical(Caption(), "The check has changes that are not posted.  Post it, then print it.");
    return false;
  }
  const std::string number = loaded_->number;
  const bool there = tables_.checks.SeekNumber(number);
  if (there && tables_.checks.Read() == *loaded_) return true;
  ShowChanged("Check " + number, "printed",
              [&] { there ? ShowCheck(tables_.checks.Read()) : OpenNumber(number); });
  return false;
}

void FrmEditChecksPost::Print() {
  if (ports_.printer == nullptr || !ReadBank() || !PostedCheckStands()) return;
  const EntryRefusal problem = FirstEntryProblem(CheckEntryFields(), kCheckLayout, Entries());
  if (!Passes(problem) || !DateIsGood("txtCheckDated", "Check Date")) return;
  bool valid = false;
  const CheckRecord check = Record(PeriodIn("txtCheckAcctPeriod", &valid));
  if (check.amount.IsZero() &&
      Boxes().Show({BoxIcon::kQuestion, Caption(), "Check Amount is Zero...  Print ?", BoxButtons::kYesNo,
                    BoxAnswer::kNo}) != BoxAnswer::kYes) {
    return;
  }
  if (check.payee.empty()) Boxes().Exclaim(Caption(), "WARNING - Payee name is blank...");
  const bool preview = IsOn("mnuOptionsUsePrintPreview");
  const CheckOnPaper paper = MakeCheckOnPaper(check, Text("txtRemittanceAdvice"));
  if (ports_.printer->Print(paper, bank_, preview)) printed_ = !loaded_;
}

}  // namespace tallwick
