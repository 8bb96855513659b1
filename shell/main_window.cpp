#include "shell/main_window.h"

#include <functional>

#include "core/text_format.h"
#include "shell/bank_overview.h"
#include "shell/company_tables.h"
#include "shell/date_advance.h"
#include "shell/rights.h"
#include "shell/start_up.h"

namespace tallwick {
namespace {

// What a menu command needs and does.
struct Command {
  std::string_view control;
  std::string_view caption;
  bool needs_bank;
  int right;                // 0 = none
  std::string_view screen;  // the screen it opens, if any
  std::string_view mode;
};

constexpr Command kCommands[] = {
    {"mnuFileOpen", "&Open Bank Account...", false, 0, "frmBankSelect", ""},
    {"mnuFileClose", "&Close Bank Account", true, 0, "", ""},
    {"mnuFileExit", "E&xit", false, 0, "", ""},
    {"mnuEditChecksPost", "Post &Checks...", true, kRightPostChecks, "frmEditChecksPost", "Posting"},
    {"mnuEditChecksClear", "C&lear Checks...", true, kRightClearChecks, "frmEditChecksPost", "Clearing"},
    {"mnuEditChecksVoid", "&Void Checks...", true, kRightVoidChecks, "frmEditChecksPost", "Voiding"},
    {"mnuEditChecksStopPayment", "&Stop Payment...", true, kRightVoidChecks, "frmEditChecksPost",
     "Stop Payment"},
    {"mnuEditDepositsPost", "Post &Deposits...", true, kRightPostDeposits, "frmEditDepositsPost", "Posting"},
    {"mnuEditDepositsClear", "Clea&r Deposits...", true, kRightClearDeposits, "frmEditDepositsClear",
     "Clearing"},
    {"mnuEditWiresPost", "Post &Wire Transfers...", true, kRightWires, "frmEditWiresPost", "Posting"},
    {"mnuEditVouchersPost", "Post &Vouchers...", true, kRightPostChecks, "frmEditVouchersPost", "Posting"},
    {"mnuViewRefresh", "&Refresh", true, 0, "", ""},
};

constexpr std::string_view kFigures[] = {"lblBankName",          "lblBankAddress",        "lblAccountNumber",
                                         "lblAcctPeriod",        "lblLastReconciliation", "lblBookBalance",
                                         "lblOutstandingChecks", "lblOutstandingDeposits"};

std::string Money(Currency amount) {
  return FormatNumber(amount, "#,###,###,##0.00");
}

std::string Counted(const CountedSum& sum) {
  return Money(sum.sum) + " (" + FormatNumber(static_cast<long long>(sum.count), "###,##0") + ")";
}

std::string PeriodText(const Period& period) {
  return period.IsEmpty() ? "None yet" : LongForm(period);
}

std::string AddressLine(const BankRecord& bank) {
  std::string text;
  for (const std::string* line : {&bank.address1, &bank.address2, &bank.city_state}) {
    if (line->empty()) continue;
    if (!text.empty()) text += ", ";
    text += *line;
  }
  return text;
}

std::string WindowCaption(const Suite& suite) {
  std::string caption(kProgramName);
  if (!suite.CompanyName().empty()) caption += " - " + suite.CompanyName();
  if (!suite.CompanyNumber().empty()) caption += " (" + suite.CompanyNumber() + ")";
  return caption;
}

}  // namespace

FrmMainEscrowAccounting::FrmMainEscrowAccounting(Session& session, ScreenOpener& opener)
    : Form("frmMainEscrowAccounting", session.Boxes()), session_(session), opener_(opener) {
  SetFormCaption(WindowCaption(session.TheSuite()));
  for (const Command& command : kCommands) {
    Add(ControlKind::kMenu, std::string(command.control), std::string(command.caption));
  }
  for (std::string_view panel : {"BankName", "Printer", "Version"})
    Add(ControlKind::kLabel, std::string(panel));
  for (std::string_view figure : kFigures) Add(ControlKind::kLabel, std::string(figure));
  Add(ControlKind::kGrid, "grdLatestPostings", "Latest postings");
  session_.Watch(this);
}

FrmMainEscrowAccounting::~FrmMainEscrowAccounting() {
  session_.Unwatch(this);
}

void FrmMainEscrowAccounting::OnOpen() {
  AdvanceAccountingDate(session_);
  ShowStatus();
  ShowCommands();
  ShowFigures();
}

void FrmMainEscrowAccounting::OnMenu(Control& control) {
  for (const Command& command : kCommands) {
    if (command.control == control.name && !command.screen.empty()) {
      opener_.OpenScreen(command.screen, command.mode);
      return;
    }
  }
  if (control.name == "mnuFileClose") session_.SetBank({}, {});
  if (control.name == "mnuFileExit") Close();
  if (control.name == "mnuViewRefresh") ShowFigures();
}

bool FrmMainEscrowAccounting::OnKey(std::string_view key) {
  if (key != "F5") return false;
  ShowFigures();
  return true;
}

void FrmMainEscrowAccounting::SessionChanged(SessionChange change) {
  if (change == SessionChange::kBank || change == SessionChange::kPrinter) ShowStatus();
  if (change == SessionChange::kBank || change == SessionChange::kUser) ShowCommands();
  if (change == SessionChange::kBank || change == SessionChange::kPosted) ShowFigures();
}

void FrmMainEscrowAccounting::ShowStatus() {
  const ProgramVersion& version = session_.Version();
  SetCaption("BankName", session_.BankName());
  SetCaption("Printer", "Printer: " + (session_.Printer().empty() ? "none" : session_.Printer()));
  SetCaption("Version", "Version: " + VersionText(version.major, version.minor, version.revision));
}

void FrmMainEscrowAccounting::ShowCommands() {
  const bool has_bank = !session_.BankCode().empty();
  for (const Command& command : kCommands) {
    const bool granted = command.right == 0 || session_.MayUse(command.right);
    SetEnabled(command.control, granted && (has_bank || !command.needs_bank));
  }
}

void FrmMainEscrowAccounting::ShowFigures() {
  std::optional<BankRecord> bank;
  if (!session_.BankCode().empty()) bank = session_.Company().banks.Find(session_.BankCode());
  if (!bank) {
    for (std::string_view figure : kFigures) SetCaption(figure, {});
    SetSource("grdLatestPostings", nullptr);
    return;
  }
  BankOverview overview = ReadBankOverview(session_);
  SetCaption("lblBankName", bank->name);
  SetCaption("lblBankAddress", AddressLine(*bank));
  SetCaption("lblAccountNumber", "Account No. " + bank->account_number);
  SetCaption("lblAcctPeriod", PeriodText(bank->accounting));
  SetCaption("lblLastReconciliation", PeriodText(bank->reconciled));
  SetCaption("lblBookBalance", Money(overview.book_balance));
  SetCaption("lblOutstandingChecks", Counted(overview.outstanding_checks));
  SetCaption("lblOutstandingDeposits", Counted(overview.outstanding_deposits));
  SetSource("grdLatestPostings", std::make_shared<LatestPostings>(std::move(overview.latest)));
}

}  // namespace tallwick
