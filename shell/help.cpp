#include "shell/help.h"

#include <algorithm>
#include <array>

#include "core/text.h"
#include "shell/machine.h"

namespace tallwick {
namespace {

constexpr std::array<std::string_view, kHelpBooks> kBooks{
    "kpHelp.chm",          "kpEscrowHelp.chm",       "kpWordProcessorHelp.chm",
    "kpReportingHelp.chm", "kpDocGeneratorHelp.chm", "kpInformantHelp.chm"};

constexpr HelpPage kPages[] = {
    {"index.html", "Contents", 1, "", "contents|help|start"},
    {"main-window.html", "The main window", 10, "frmMainEscrowAccounting",
     "main window|book balance|outstanding|overdrawn|latest postings|find a file|refresh|toolbar|status bar"},
    {"bank-selection.html", "Choosing a bank account", 20, "frmBankSelect",
     "bank|account|select|inactive banks|accounting period|last reconciliation"},
    {"check-posting.html", "Posting checks", 30, "frmEditChecksPost",
     "check|post|payee|amount|file number|voucher|void|stop payment|clear|reconciled period"},
    {"check-printing.html", "Printing checks", 37, "frmPrintChecks",
     "print|check stock|stub|MICR|layout|reprint|printer|offset"},
    {"deposits.html", "Deposits", 31, "frmEditDepositsPost frmEditDepositsClear",
     "deposit|wire in|slip|line items|cut|paste|clear deposits|sequence"},
    {"wires.html", "Wire transfers", 32, "frmEditWiresPost",
     "wire|wire transfer|outgoing wire|reference number"},
    {"vouchers.html", "Vouchers", 33, "frmEditVouchersPost", "voucher|set aside"},
    {"reconciliation.html", "Reconciling a bank account", 36, "frmReconcileAccount",
     "reconcile|reconciliation|statement|balance|difference|outstanding|three-way proof|take "
     "back|charges|credits"},
    {"file-ledgers.html", "File ledgers", 34, "frmViewFileLedgers",
     "ledger|file balance|condition|over drawn|funds available|notes"},
    {"trial-balance.html", "Trial balance", 35, "frmViewTrialBalance",
     "trial balance|open balances|overdrawn|dormant|last activity"},
    {"users.html", "Users and rights", 80, "frmEditUsers",
     "user|rights|password|group|administrator|banks of a user"},
    {"audit-trail.html", "The audit trail", 81, "frmViewLog", "audit|log|trail|who changed|prove"},
    {"copy-restore.html", "Copies of the data", 82, "frmCopyDatabases frmRestoreDatabases",
     "copy|restore|backup|DBFCOPYS"},
    {"maintenance.html", "Looking after the tables", 83,
     "frmMaintenance frmCheckXReference frmCheckDatabaseVersion frmPurgeFiles",
     "maintenance|rebuild|reindex|pack|update|version|cross-reference|purge"},
    {"periods-and-dates.html", "Periods, dates and amounts", 40, "",
     "period|date|amount|advance|accounting date|month|year"},
    {"transactions-locked.html", "When transactions are locked", 50, "",
     "locked|transactions locked|lock|exclusive access|another workstation"},
    {"keys.html", "Keys", 60, "", "keys|keyboard|F1|F2|F4|F5|Ctrl|Enter|Esc|shortcut"},
    {"starting.html", "Starting, and what can be in the way", 70, "frmAbout",
     "start|suite|data path|settings|about|version|branch|Launcher.xml|Branches.xml"}};

bool IsIn(std::string_view texts, char separator, std::string_view text) {
  const std::vector<std::string> pieces = Split(texts, separator);
  return std::any_of(pieces.begin(), pieces.end(),
                     [&](const std::string& one) { return EqualsIgnoreCase(one, text); });
}

// The rest of the text behind a prefix.
std::optional<std::string> Behind(std::string_view text, std::string_view prefix) {
  if (text.substr(0, prefix.size()) != prefix) return std::nullopt;
  return std::string(Trim(text.substr(prefix.size())));
}

// A whole keyword goes before a part of one.
const HelpPage* PageOfKeyword(const std::vector<HelpPage>& pages, std::string_view word) {
  if (word.empty()) return nullptr;
  for (const HelpPage& page : pages) {
    if (IsIn(page.keywords, '|', word)) return &page;
  }
  for (const HelpPage& page : pages) {
    if (ToLower(page.keywords).find(ToLower(word)) != std::string::npos) return &page;
  }
  return nullptr;
}

std::string TopicOf(const HelpRequest& request) {
  switch (request.command) {
    case HelpCommand::kContext:
      return "context:" + std::to_string(request.context);
    case HelpCommand::kKeyword:
      return "keyword:" + request.keyword;
    case HelpCommand::kIndex:
    case HelpCommand::kSearch:
      return "index";
    case HelpCommand::kContents:
      break;
  }
  return "contents";
}

}  // namespace

std::string HelpFile(std::string_view application_path, int book) {
  if (book < 1 || book > kHelpBooks) return {};
  return WithBackslash(application_path) + std::string(kBooks[static_cast<std::size_t>(book) - 1]);
}

void OpenHelp(Session& session, ScreenOpener& opener, int book, const HelpRequest& request) {
  if (book == kEscrowHelpBook) return opener.OpenScreen("frmHelp", TopicOf(request));
  const std::string file = HelpFile(session.TheSuite().ApplicationPath(), book);
  HelpViewer* viewer = session.Help();
  if (viewer != nullptr && session.Files().FileExists(file) && viewer->Show(file, request)) return;
  session.Boxes().Critical("Help", "The help book " + Quoted(session.Files().PlatformPath(file)) +
                                       " cannot be shown.  Ask whoever looks after the suite to install it.");
}

void OpenHelpOf(ScreenOpener& opener, std::string_view screen) {
  opener.OpenScreen("frmHelp", screen);
}

std::vector<HelpPage> HelpPages() {
  return {std::begin(kPages), std::end(kPages)};
}

// Beside the suite's other books, beside an installed program, or in the tree that the program was built
// from.
std::string HelpFolder(const Session& session) {
  std::vector<std::string> folders{WithBackslash(session.TheSuite().ApplicationPath()) + "Escrow Help\\"};
  if (session.TheMachine() != nullptr) {
    const std::string program = session.TheMachine()->Facts().program_file;
    const std::string home = program.substr(0, program.size() - FileNameOf(program).size());
    for (const char* place : {"help\\", "..\\share\\tallwick\\help\\", "..\\..\\docs\\help\\"}) {
      folders.push_back(home + place);
    }
  }
  for (const std::string& folder : folders) {
    if (session.Files().FileExists(folder + std::string(kPages[0].file))) return folder;
  }
  return {};
}

FrmHelp::FrmHelp(Session& session, std::string_view topic)
    : Form("frmHelp", session.Boxes()), session_(session), topic_(topic), pages_(HelpPages()) {
  SetFormCaption("Escrow Accounting Help");
  Add(ControlKind::kList, "lstTopics", "&Topics");
  Add(ControlKind::kText, "txtKeyword", "&Look up");
  Add(ControlKind::kButton, "cmdFind", "&Find");
  Add(ControlKind::kText, "txtPage", "Page");
  Add(ControlKind::kButton, "cmdClose", "&Close");
}

void FrmHelp::OnOpen() {
  std::vector<std::string> titles;
  for (const HelpPage& page : pages_) titles.emplace_back(page.title);
  SetRows("lstTopics", std::move(titles), 1);
  Show(pages_.front());
  if (const std::optional<std::string> word = Behind(topic_, "keyword:")) {
    SetText("txtKeyword", *word);
    return FindKeyword();
  }
  if (const HelpPage* page = PageOfTopic(topic_)) Show(*page);
  SetFocus(topic_ == "index" ? "txtKeyword" : "lstTopics");
}

const HelpPage* FrmHelp::PageOfTopic(std::string_view topic) const {
  const std::string context = Behind(topic, "context:").value_or("");
  for (const HelpPage& page : pages_) {
    if (page.file == topic || std::to_string(page.context) == context || IsIn(page.screens, ' ', topic))
      return &page;
  }
  return nullptr;
}

void FrmHelp::Show(const HelpPage& page) {
  const std::string folder = HelpFolder(session_);
  const std::optional<std::string> text = session_.Files().Read(folder + std::string(page.file));
  SetText("txtPage",
          !folder.empty() && text
              ? *text
              : "<p>The pages of the help book are not installed. Ask whoever looks after the program.</p>");
  SetSelected("lstTopics", static_cast<int>(&page - pages_.data()) + 1);
}

void FrmHelp::OnChoose(Control& control) {
  if (control.selected > 0) Show(pages_[static_cast<std::size_t>(control.selected) - 1]);
}

// A link on the page names the page it leads to.
void FrmHelp::OnChange(Control& control) {
  if (control.name != "txtPage") return;
  const HelpPage* page = PageOfTopic(control.text);
  Show(page != nullptr ? *page : pages_.front());
}

void FrmHelp::FindKeyword() {
  const std::string word(Trim(Text("txtKeyword")));
  if (const HelpPage* page = PageOfKeyword(pages_, word)) return Show(*page);
  Boxes().Inform("Keyword Not Found",
                 Quoted(word) + " is not in the help book.  Choose a topic from the list.");
  SetFocus("txtKeyword");
}

void FrmHelp::OnClick(Control& control) {
  control.name == "cmdFind" ? FindKeyword() : static_cast<void>(Close());
}

bool FrmHelp::OnKey(std::string_view key) {
  if (key == "Esc") return Close();
  if (key != "Enter" || Focus() == nullptr || Focus()->name != "txtKeyword") return false;
  FindKeyword();
  return true;
}

}  // namespace tallwick
