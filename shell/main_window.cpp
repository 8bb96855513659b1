#include "shell/main_window.h"

#include <algorithm>

#include "core/text.h"
#include "core/text_format.h"
#include "shell/about.h"
#include "shell/clsBranch.h"
#include "shell/company_tables.h"
#include "shell/date_advance.h"
#include "shell/help.h"
#include "shell/screen_routes.h"
#include "shell/start_up.h"
#include "shell/transactions_switch.h"
#include "store/clsKVRData.h"

namespace tallwick {
namespace {

constexpr std::string_view kLatest = "grdLatestPostings";

// A bar of the window, and the command that shows and hides it.
struct Bar {
  std::string_view command;
  std::string_view name;
  std::string_view caption;
};

constexpr Bar kBars[] = {{"mnuViewToolBar", "tbToolBar", "Toolbar"},
                         {"mnuViewStatusBar", "sbStatusBar", "Status Bar"}};

constexpr std::string_view kFigures[] = {
    "lblBankName",          "lblBankAddress",         "lblAccountNumber",
    "lblAcctPeriod",        "lblLastReconciliation",  "lblBookBalance",
    "lblOutstandingChecks", "lblOutstandingDeposits", "lblFilesOverdrawn"};

constexpr std::string_view kSums[] = {"lblBookBalance", "lblOutstandingChecks", "lblOutstandingDeposits",
                                      "lblFilesOverdrawn"};
constexpr std::chrono::milliseconds kFirstSlice{20};  // enough for what a day brings

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

std::vector<std::string_view> NamesOf(const MainCommand& command) {
  if (command.other_name.empty()) return {command.control};
  return {command.control, command.other_name};
}

std::string WindowCaption(const Session& session) {
  const Suite& suite = session.TheSuite();
  std::string caption(kProgramName);
  if (!suite.CompanyName().empty()) caption += " - " + suite.CompanyName();
  if (!suite.CompanyNumber().empty()) caption += " (" + suite.CompanyNumber() + ")";
  if (session.Data().IsReadOnly(session.Company().banks.Handle())) caption += " - Read Only";
  return caption;
}

}  // namespace

FrmMainEscrowAccounting::FrmMainEscrowAccounting(Session& session, ScreenOpener& opener)
    : Form("frmMainEscrowAccounting", session.Boxes()),
      session_(session),
      opener_(opener),
      figures_(session) {
  SetFormCaption(WindowCaption(session));
  for (const MainCommand& command : MainCommands()) {
    for (const std::string_view name : NamesOf(command))
      Add(ControlKind::kMenu, std::string(name), std::string(command.caption));
  }
  for (const Bar& bar : kBars) {
    Add(ControlKind::kFrame, std::string(bar.name), std::string(bar.caption));
    SetValue(bar.command, 1);
  }
  for (std::string_view panel : {"BankName", "Login", "Printer", "Version"})
    Add(ControlKind::kLabel, std::string(panel));
  for (std::string_view figure : kFigures) Add(ControlKind::kLabel, std::string(figure));
  Add(ControlKind::kCombo, "txtFindFile", "Find a file");
  Add(ControlKind::kButton, "cmdFindFile", "Find");
  Add(ControlKind::kGrid, std::string(kLatest), "Latest postings");
  session_.Watch(this);
}

FrmMainEscrowAccounting::~FrmMainEscrowAccounting() {
  session_.Unwatch(this);
}

void FrmMainEscrowAccounting::OnOpen() {
  AdvanceAccountingDate(session_);
  ShowStatus();
  ShowCommands();
  ShowRecentFiles();
  ShowFigures();
  TellUserProblem();
}

void FrmMainEscrowAccounting::OnMenu(Control& control) {
  const auto commands = MainCommands();
  const auto found = std::find_if(commands.begin(), commands.end(), [&](const MainCommand& command) {
    return command.control == control.name || command.other_name == control.name;
  });
  if (found == commands.end()) return;
  // A right may have been taken away, and the switch thrown on another workstation, since the commands were
  // shown.
  const bool open = TransactionsOpen(session_);
  if (!IsOffered(*found, session_.SecurityOn(), open)) {
    ShowStatus();
    ShowCommands();
    if (found->transactions && !open) Boxes().Exclaim(kProgramName, kTransactionsLocked);
    return;
  }
  if (found->screen.empty()) return CarryOut(found->control);
  if (found->control == kLedgerCommand)
    return opener_.OpenScreen(found->screen, FileOfChosenRow(At(kLatest)));
  opener_.OpenScreen(found->screen, found->mode);
}

void FrmMainEscrowAccounting::CarryOut(std::string_view command) {
  if (command == "mnuFileClose") session_.SetBank({}, {});
  if (command == "mnuFileExit") Close();
  if (command == "mnuFileLockTransactions") SwitchTransactions();
  if (command == "mnuViewRefresh") ReadAnew();
  for (const Bar& bar : kBars)
    if (command == bar.command) ShowBar(bar.command, bar.name, !At(bar.name).visible);
  if (command == "mnuHelpContents")
    OpenHelp(session_, opener_, kEscrowHelpBook, {HelpCommand::kContents, 0, {}});
  if (command == "mnuHelpIndex") OpenHelp(session_, opener_, kEscrowHelpBook, {HelpCommand::kIndex, 0, {}});
  if (command == "mnuHelpTallwick") OpenHelp(session_, opener_, 1, {HelpCommand::kContents, 0, {}});
}

void FrmMainEscrowAccounting::ShowBar(std::string_view command, std::string_view bar, bool seen) {
  SetVisible(bar, seen);
  SetValue(command, seen ? 1 : 0);
}

void FrmMainEscrowAccounting::SwitchTransactions() {
  if (!SetTransactionsOpen(session_, !TransactionsOpen(session_))) {
    Boxes().Critical(
        kProgramName,
        "The transactions switch could not be written to the company's data folder.  Make room on its "
        "disk, or ask for the right to write there, and try again.");
  }
  session_.NotifyChanged(SessionChange::kSwitch);
}

void FrmMainEscrowAccounting::OnClick(Control& control) {
  if (control.name == "cmdFindFile") FindFile();
}

bool FrmMainEscrowAccounting::OnKey(std::string_view key) {
  if (key == "F5") {
    ReadAnew();
    return true;
  }
  if (key != "Enter" || Focus() == nullptr) return false;
  const std::string& control = Focus()->name;
  if (control == "txtFindFile") FindFile();
  if (control == kLatest) OpenPosting();
  return control == "txtFindFile" || control == kLatest;
}

// The ledger of the posting's file; a deposit for several files is shown itself.
void FrmMainEscrowAccounting::OpenPosting() {
  const Control& grid = At(kLatest);
  if (!grid.source || grid.selected == 0) return;
  const ScreenRoute& ledger = *FindRoute(kLedgerCommand);
  const std::string file = FileOfChosenRow(grid);
  if (!file.empty() && opener_.Offers(ledger.screen, {})) return opener_.OpenScreen(ledger.screen, file);
  const std::vector<std::string> cells = grid.source->Row(static_cast<std::size_t>(grid.selected) - 1);
  const ItemRoute item = RouteToItem(cells[1], cells[2], cells[0]);
  opener_.OpenItem(item.screen, kViewingMode, item.key);
}

// Everything as it is now: what other workstations have changed too.
void FrmMainEscrowAccounting::ReadAnew() {
  figures_.Forget();
  ShowStatus();
  ShowCommands();
  ShowRecentFiles();
  ShowFigures();
}

void FrmMainEscrowAccounting::FindFile() {
  const std::string file = ToUpper(Trim(Text("txtFindFile")));
  if (file.empty()) return;
  const FileReferences found = session_.Company().xrefs.LookUpFile(file);
  if (found.banks.empty()) {
    Boxes().Inform("Find a File", file + " does NOT have any transactions posted.");
    return SetFocus("txtFindFile");
  }
  RememberFile(file);
  const ScreenRoute& ledger = *FindRoute(kLedgerCommand);
  if (opener_.Offers(ledger.screen, {})) return opener_.OpenScreen(ledger.screen, file);
  const auto counted = [](int count, std::string_view what) {
    return FormatNumber(static_cast<long long>(count), "###,##0") + " " + std::string(what) +
           (count == 1 ? "" : "s");
  };
  Boxes().Inform("Find a File", file + " has " + counted(found.checks, "check") + ", " +
                                    counted(found.deposits, "deposit item") + ", " +
                                    counted(found.wires, "wire") + " and " +
                                    counted(found.vouchers, "voucher") + " in " +
                                    counted(static_cast<int>(found.banks.size()), "bank account") + ".");
}

// The branch remembers its latest files; a settings file that cannot be written is no reason to stop.
void FrmMainEscrowAccounting::RememberFile(std::string_view file_number) {
  const std::string name = session_.TheSuite().BranchName();
  if (name.empty()) return;
  BranchFile file(session_.Files(), session_.TheSuite().SettingsPath());
  clsBranch branch = file.Load(name);
  branch.Files.Add(file_number);
  file.Save(branch);
  ShowRecentFiles();
}

void FrmMainEscrowAccounting::ShowRecentFiles() {
  const std::string name = session_.TheSuite().BranchName();
  if (name.empty()) return;
  std::vector<std::string> files =
      BranchFile(session_.Files(), session_.TheSuite().SettingsPath()).Load(name).Files.Entries();
  std::erase(files, "");
  SetRows("txtFindFile", std::move(files));
}

void FrmMainEscrowAccounting::SessionChanged(SessionChange change) {
  ShowStatus();
  if (change != SessionChange::kPrinter) ShowCommands();
  if (change == SessionChange::kBank) figures_.Forget();
  if (change == SessionChange::kBank || change == SessionChange::kPosted) ShowFigures();
  if (change == SessionChange::kUser) TellUserProblem();
}

// Commands that are all grey do not say why.
void FrmMainEscrowAccounting::TellUserProblem() {
  const std::string problem = session_.UserProblem();
  if (problem.empty()) return;
  Boxes().Exclaim(kProgramName, problem +
                                    "\r\rSecurity is on: until then the bank accounts, and what asks for a "
                                    "right, cannot be used here.");
}

void FrmMainEscrowAccounting::ShowStatus() {
  SetCaption("BankName", TransactionsOpen(session_) ? session_.BankName() : std::string(kTransactionsLocked));
  const std::string login = session_.Login();
  SetCaption("Login", login.empty() ? login : "Login: " + login);
  SetCaption("Printer", "Printer: " + (session_.Printer().empty() ? "none" : session_.Printer()));
  SetCaption("Version", "Version: " + VersionTextOf(session_.Version()));
}

void FrmMainEscrowAccounting::ShowCommands() {
  const bool security_on = session_.SecurityOn();
  const bool open = TransactionsOpen(session_);
  for (const MainCommand& command : MainCommands()) {
    const bool offered = IsOffered(command, security_on, open);
    for (const std::string_view name : NamesOf(command)) SetEnabled(name, offered);
  }
  SetValue("mnuFileLockTransactions", open ? 0 : 1);
}

bool FrmMainEscrowAccounting::IsOffered(const MainCommand& command, bool security_on, bool open) const {
  if (command.control == "mnuFileSave") return false;  // this window has nothing of its own to save
  if (command.needs_bank && session_.BankCode().empty()) return false;
  if (command.transactions && !open) return false;
  if (!command.screen.empty() && !opener_.Offers(command.screen, command.mode)) return false;
  return session_.MayUse(command.right, security_on);
}

// While maintenance has the tables for itself the figures stay as they were read; it tells when it gives the
// tables back.
bool FrmMainEscrowAccounting::IsKeptOut() const {
  return !session_.BankCode().empty() && !session_.Company().banks.IsOpen();
}

void FrmMainEscrowAccounting::ShowFigures() {
  if (IsKeptOut()) return;
  std::optional<BankRecord> bank;
  if (!session_.BankCode().empty()) bank = session_.Company().banks.Find(session_.BankCode());
  if (!bank) {
    for (std::string_view figure : kFigures) SetCaption(figure, {});
    ShowLatest(std::nullopt);
    return;
  }
  BankOverview overview = figures_.Read(kFirstSlice);
  SetCaption("lblBankName", bank->name);
  SetCaption("lblBankAddress", AddressLine(*bank));
  SetCaption("lblAccountNumber", "Account No. " + bank->account_number);
  SetCaption("lblAcctPeriod", PeriodText(bank->accounting));
  SetCaption("lblLastReconciliation", PeriodText(bank->reconciled));
  ShowSums(overview);
  ShowLatest(std::move(overview.latest));
  if (overview.percent_read < 100) LetWork();
}

// What has not changed keeps the row that is chosen: the figures are looked at every few seconds.
void FrmMainEscrowAccounting::ShowLatest(std::optional<std::vector<LatestPosting>> latest) {
  if (latest == latest_) return;
  latest_ = std::move(latest);
  SetSource(kLatest, latest_ ? std::make_shared<LatestPostings>(*latest_) : nullptr);
}

// Many records are read while the window can be used.
bool FrmMainEscrowAccounting::OnWork(std::chrono::milliseconds budget) {
  if (session_.BankCode().empty() || IsKeptOut()) return false;
  const BankOverview overview = figures_.Read(budget);
  ShowSums(overview);
  return overview.percent_read < 100;
}

// Sums of a part of the records would be taken for those of the bank.
void FrmMainEscrowAccounting::ShowSums(const BankOverview& overview) {
  if (overview.percent_read < 100) {
    const std::string reading = "reading, " + std::to_string(overview.percent_read) + " %";
    for (const std::string_view sum : kSums) SetCaption(sum, reading);
    return;
  }
  SetCaption("lblBookBalance", Money(overview.book_balance));
  SetCaption("lblOutstandingChecks", Counted(overview.outstanding_checks));
  SetCaption("lblOutstandingDeposits", Counted(overview.outstanding_deposits));
  SetCaption("lblFilesOverdrawn", FormatNumber(static_cast<long long>(overview.files_overdrawn), "###,##0"));
}

}  // namespace tallwick
