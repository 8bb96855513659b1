#include "audit/view_log.h"

#include <algorithm>

#include "audit/audit_trail.h"
#include "audit/bank_proof.h"
#include "core/encoding.h"
#include "core/text.h"
#include "core/text_format.h"

namespace tallwick {
namespace {

constexpr int kOrderAscending = 1;
constexpr int kOrderDescending = 2;
constexpr int kAllColumns = 1;
constexpr int kMarkedColumns = 2;
constexpr int kUpToColumn = 3;

constexpr std::string_view kGridControls[] = {"fraGrids",      "cboGrids",           "cmdAddGrid",
                                              "lstGrids",      "cmdDeleteGrid",      "txtGridColumns",
                                              "lstColumnList", "chkPrintEntireGrid", "lblGridNote"};

// The lines of the entries found, as the register shows them.
class FoundLines : public RowSource {
 public:
  FoundLines(std::shared_ptr<const AuditLog> log, const std::vector<std::uint32_t>& found,
             const GridView& view)
      : log_(std::move(log)), view_(view) {
    for (std::uint32_t place : found) AddEntry(log_->Entries()[place]);
  }

  std::vector<std::string> Headings() const override {
    return {"Date @ Time", "TX", "Reference", "Login Name", "Computer Name", "Event", "Value"};
  }
  std::size_t RowCount() override { return lines_.size(); }
  std::vector<std::string> Row(std::size_t row) override {
    if (row >= lines_.size()) return {};
    const Line& line = lines_[row];
    const AuditEntry& entry = *line.entry;
    const AuditLine text =
        line.event == nullptr ? AuditLine{} : LinesOfEvent(*log_, *line.event, view_)[line.number];
    return {MomentText(entry),
            FromWindows1252(entry.tx),
            FromWindows1252(entry.reference),
            FromWindows1252(entry.login),
            FromWindows1252(entry.computer),
            text.event,
            text.value};
  }

 private:
  struct Line {
    const AuditEntry* entry;
    const AuditEvent* event;  // null for an entry without a line of its own
    std::uint32_t number;     // among the event's lines
  };

  void AddEntry(const AuditEntry& entry) {
    const std::size_t before = lines_.size();
    for (const AuditEvent& event : log_->Events(entry)) {
      const std::size_t count =
          event.kind == AuditEventKind::kGrid ? LinesOfEvent(*log_, event, view_).size() : 1;
      for (std::uint32_t number = 0; number < count; ++number) lines_.push_back({&entry, &event, number});
    }
    if (lines_.size() == before) lines_.push_back({&entry, nullptr, 0});
  }

  std::shared_ptr<const AuditLog> log_;
  GridView view_;
  std::vector<Line> lines_;
};

std::vector<std::string> MarkedRows(const Control& list) {
  std::vector<std::string> rows;
  for (std::size_t row = 0; row < list.rows.size(); ++row) {
    if (list.marks[row]) rows.push_back(list.rows[row]);
  }
  return rows;
}

// Marks of the rows that were checked before, by their text.
std::vector<bool> KeptMarks(const std::vector<std::string>& rows, const std::vector<std::string>& checked) {
  std::vector<bool> marks;
  marks.reserve(rows.size());
  for (const std::string& row : rows)
    marks.push_back(std::find(checked.begin(), checked.end(), row) != checked.end());
  return marks;
}

std::vector<std::string> KindRows() {
  std::vector<std::string> rows;
  for (AuditEventKind kind : kAuditEventKinds) rows.emplace_back(AuditEventKindName(kind));
  return rows;
}

std::string Counted(std::size_t count) {
  return FormatNumber(static_cast<long long>(count), "##,###,###,##0");
}

}  // namespace

FrmViewLog::FrmViewLog(Session& session)
    : Form("frmViewLog", session.Boxes()),
      session_(session),
      bank_code_(session.BankCode()),
      path_(AuditLogPath(session.DataPath(), bank_code_)),
      log_(std::make_shared<AuditLog>("")) {
  SetFormCaption("Audit Trail Viewer - " + session.BankName());
  AddControls();
}

void FrmViewLog::AddControls() {
  Add(ControlKind::kText, "txtLogFile").enabled = false;
  Add(ControlKind::kMenu, "mnuFileRefresh", "&Refresh");
  Add(ControlKind::kMenu, "mnuFilePreview", "Print Pre&view...");
  Add(ControlKind::kMenu, "mnuFilePrint", "&Print...");
  Add(ControlKind::kMenu, "mnuFilePdf", "Save as P&DF...");
  Add(ControlKind::kMenu, "mnuFileProve", "Prove Lo&g");
  Add(ControlKind::kMenu, "mnuFileExit", "E&xit");
  Add(ControlKind::kCombo, "cboReferenceNum", "Reference Number:");
  Add(ControlKind::kCombo, "cboLogin", "Login Name:");
  Add(ControlKind::kCombo, "cboCompName", "Computer Name:");
  Add(ControlKind::kCheckList, "lstTXCode", "TX Code:");
  Add(ControlKind::kDate, "txtFrom", "From:");
  Add(ControlKind::kDate, "txtTo", "To:");
  Add(ControlKind::kCheckList, "lstEntries", "&Entries:");
  Add(ControlKind::kCheckList, "lstControls", "&Controls:");
  Add(ControlKind::kFrame, "fraGrids", "G&rids:");
  Add(ControlKind::kCombo, "cboGrids");
  Add(ControlKind::kButton, "cmdAddGrid", "&Add");
  Add(ControlKind::kList, "lstGrids");
  Add(ControlKind::kButton, "cmdDeleteGrid", "De&lete");
  Add(ControlKind::kOption, "optGridSelect", "All Columns", kAllColumns).value = 1;
  Add(ControlKind::kOption, "optGridSelect", "Select Columns", kMarkedColumns);
  Add(ControlKind::kOption, "optGridSelect", "to Column number:", kUpToColumn);
  Add(ControlKind::kNumber, "txtGridColumns");
  Add(ControlKind::kCheckList, "lstColumnList");
  Add(ControlKind::kCheck, "chkPrintEntireGrid", "Print Entire Grid");
  Add(ControlKind::kLabel, "lblGridNote", "Note: Only selected grids will be displayed.");
  Add(ControlKind::kCheck, "chkMeetAllValues", "En&tries must meet all Search Criteria").value = 1;
  Add(ControlKind::kOption, "optOrder", "Ascending", kOrderAscending).value = 1;
  Add(ControlKind::kOption, "optOrder", "Descending", kOrderDescending);
  Add(ControlKind::kCheck, "chkLandscape", "Print Landscape");
  Add(ControlKind::kButton, "cmdSearch", "&Search");
  Add(ControlKind::kButton, "cmdClear", "Clea&r Criteria");
  Add(ControlKind::kGrid, "grdEntries", "Entries");
  Add(ControlKind::kLabel, "lblFound");
  Add(ControlKind::kLabel, "lblProof");
}

void FrmViewLog::OnOpen() {
  SetText("txtLogFile", "Audit Trail Log: " + bank_code_ + "\\Audit_Trail.log");
  ReadLog();
  Search();
  SetFocus("cboReferenceNum");
}

void FrmViewLog::ReadLog() {
  std::optional<std::string> bytes = session_.Files().ReadIfThere(path_);
  if (!bytes)
    Boxes().Critical(Caption(), "The audit log cannot be read.  Make sure that " +
                                    session_.Files().PlatformPath(path_) + " may be read, and refresh.");
  log_ = std::make_shared<AuditLog>(std::move(bytes).value_or(""));
  RunSearch();
  OfferValues();
  ShowProof();
}

void FrmViewLog::OfferValues() {
  SetRows("cboReferenceNum", log_->References().Values());
  SetRows("cboLogin", log_->Logins().Values());
  SetRows("cboCompName", log_->Computers().Values());
  for (const auto& [list, rows] :
       {std::pair("lstTXCode", SearchedTxNames(*log_)), std::pair("lstEntries", KindRows()),
        std::pair("lstControls", log_->Controls().Values())}) {
    SetMarkedRows(list, rows, KeptMarks(rows, MarkedRows(At(list))));
  }
  const std::vector<std::string> grids = log_->GridNames().Values();
  SetRows("cboGrids", grids);
  for (std::string_view control : kGridControls) SetVisible(control, !grids.empty());
  for (int option = kAllColumns; option <= kUpToColumn; ++option)
    SetVisible("optGridSelect", !grids.empty(), option);
  ShowGrids();
}

void FrmViewLog::ShowProof() {
  SetCaption("lblProof", ProofSummary(ProveBankLog(session_, bank_code_)));
}

void FrmViewLog::Prove() {
  const AuditProof proof = ProveBankLog(session_, bank_code_);
  SetCaption("lblProof", ProofSummary(proof));
  std::string text;
  const auto add = [&text](const std::string& line) { text += (text.empty() ? "" : "\r") + line; };
  if (!proof.proven) add("NOT proven:");
  if (proof.proven && proof.records > 0) add(ProofSummary(proof));
  for (const std::string& problem : proof.problems) add(problem);
  for (const std::string& note : proof.notes) add(note);
  if (!proof.seal.empty()) add("Seal: " + proof.seal);
  Box box;
  box.icon = proof.proven ? BoxIcon::kInformation : BoxIcon::kCritical;
  box.title = Caption();
  box.text = text;
  Boxes().Show(box);
}

// A date is shown in one form once it is left; one that cannot be read is refused.
void FrmViewLog::OnLeave(Control& control) {
  if (control.kind != ControlKind::kDate) return;
  const std::optional<Date> date = ParseDisplayDate(control.text);
  if (date)
    SetText(control.name, DisplayDate(*date));
  else
    Refuse("The date is not valid.  Type month, day and year, such as 03/15/2024.", control.name);
}

AuditCriteria FrmViewLog::Criteria() {
  AuditCriteria criteria;
  criteria.reference = Text("cboReferenceNum");
  criteria.login = Text("cboLogin");
  criteria.computer = Text("cboCompName");
  criteria.tx_names = MarkedRows(At("lstTXCode"));
  criteria.from = ParseDisplayDate(Text("txtFrom")).value_or(Date{});
  criteria.to = ParseDisplayDate(Text("txtTo")).value_or(Date{});
  for (std::size_t row = 0; row < std::size(kAuditEventKinds); ++row) {
    if (At("lstEntries").marks[row]) criteria.kinds.push_back(kAuditEventKinds[row]);
  }
  criteria.controls = MarkedRows(At("lstControls"));
  criteria.meet_all = At("chkMeetAllValues").value == 1;
  criteria.newest_first = At("optOrder", kOrderDescending).value == 1;
  return criteria;
}

void FrmViewLog::Search() {
  const AuditCriteria criteria = Criteria();
  if (const std::string problem = CriteriaProblem(*log_, criteria); !problem.empty())
    return Refuse(problem, "txtTo");
  searched_ = criteria;
  RunSearch();
}

// What was found before holds places in the log that was searched, and in no other.
void FrmViewLog::RunSearch() {
  found_ = SearchAuditLog(*log_, searched_);
  ShowFound();
}

void FrmViewLog::ShowFound() {
  SetSource("grdEntries", std::make_shared<FoundLines>(log_, found_, view_));
  SetCaption("lblFound", log_->Entries().empty() ? std::string(kNoAuditEntries)
                                                 : Counted(found_.size()) + " of " +
                                                       Counted(log_->Entries().size()) + " entries");
}

void FrmViewLog::Clear() {
  for (std::string_view text : {"cboReferenceNum", "cboLogin", "cboCompName", "txtFrom", "txtTo"})
    SetText(text, "");
  for (std::string_view list : {"lstTXCode", "lstEntries", "lstControls"}) {
    for (std::size_t row = 1; row <= At(list).rows.size(); ++row) SetMark(list, static_cast<int>(row), false);
  }
  Search();
}

void FrmViewLog::OnChange(Control& control) {
  if (control.name == "optOrder") {
    searched_.newest_first = At("optOrder", kOrderDescending).value == 1;
    RunSearch();
  }
  if (control.name == "optGridSelect" || control.name == "txtGridColumns") TakeGridChoice();
  if (control.name == "chkPrintEntireGrid") {
    view_.entire = control.value == 1;
    ShowFound();
  }
}

void FrmViewLog::OnChoose(Control& control) {
  if (control.name == "lstGrids") ShowGridChoice();
}

void FrmViewLog::OnMark(Control& control, int) {
  if (control.name == "lstColumnList") TakeGridChoice();
}

void FrmViewLog::OnClick(Control& control) {
  if (control.name == "cmdSearch") Search();
  if (control.name == "cmdClear") Clear();
  if (control.name == "cmdAddGrid") AddGrid();
  if (control.name == "cmdDeleteGrid") DeleteGrid();
}

void FrmViewLog::OnMenu(Control& control) {
  if (control.name == "mnuFileRefresh") {
    ReadLog();
    Search();
  }
  if (control.name == "mnuFilePreview") ToPrinter(&DocumentPrinter::Preview);
  if (control.name == "mnuFilePrint") ToPrinter(&DocumentPrinter::Print);
  if (control.name == "mnuFilePdf") ToPrinter(&DocumentPrinter::SavePdf);
  if (control.name == "mnuFileProve") Prove();
  if (control.name == "mnuFileExit") Close();
}

bool FrmViewLog::OnKey(std::string_view key) {
  if (key == "Esc") {
    Close();
    return true;
  }
  if (key == "F5") Menu("mnuFileRefresh");
  if (key == "Ctrl+P") Menu("mnuFilePrint");
  return key == "F5" || key == "Ctrl+P";
}

void FrmViewLog::ToPrinter(bool (DocumentPrinter::*how)(const PrintDocument&)) {
  if (session_.Documents() == nullptr) {
    Boxes().Exclaim(Caption(), "There is no printer here.  Print from the desktop.");
    return;
  }
  const AuditReport report{*log_,
                           searched_,
                           found_,
                           view_,
                           session_.Files().Modified(path_).value_or(DateTime{}),
                           bank_code_,
                           session_.TheClock().Now().date,
                           At("chkLandscape").value == 1};
  (session_.Documents()->*how)(MakeAuditDocument(report));
}

// Grids.

GridChoice* FrmViewLog::CurrentGrid() {
  const int row = At("lstGrids").selected;
  return row > 0 ? &view_.chosen[static_cast<std::size_t>(row) - 1] : nullptr;
}

void FrmViewLog::AddGrid() {
  const Control& combo = At("cboGrids");
  if (combo.selected == 0) return Refuse("Choose a grid from the list first.", "cboGrids");
  for (const GridChoice& choice : view_.chosen) {
    if (choice.name == combo.text) return;
  }
  GridChoice choice;
  choice.name = combo.text;
  view_.chosen.push_back(std::move(choice));
  ShowGrids();
  SetSelected("lstGrids", static_cast<int>(view_.chosen.size()));
  ShowGridChoice();
  ShowFound();
}

void FrmViewLog::DeleteGrid() {
  const int row = At("lstGrids").selected;
  if (row == 0) return;
  view_.chosen.erase(view_.chosen.begin() + row - 1);
  ShowGrids();
  ShowFound();
}

void FrmViewLog::ShowGrids() {
  std::vector<std::string> names;
  for (const GridChoice& choice : view_.chosen) names.push_back(choice.name);
  SetRows("lstGrids", std::move(names), At("lstGrids").selected);
  SetVisible("lblGridNote", !view_.chosen.empty());
  ShowGridChoice();
}

void FrmViewLog::ShowGridChoice() {
  GridChoice* choice = CurrentGrid();
  SetEnabled("cmdDeleteGrid", choice != nullptr);
  for (int option = kAllColumns; option <= kUpToColumn; ++option)
    SetEnabled("optGridSelect", choice != nullptr, option);
  SetEnabled("txtGridColumns", choice != nullptr);
  SetEnabled("lstColumnList", choice != nullptr);
  std::vector<std::string> columns;
  if (choice != nullptr) {
    for (const AuditGrid& grid : log_->Grids()) {
      if (FromWindows1252(grid.name) != choice->name || !columns.empty()) continue;
      for (std::string_view column : grid.columns) columns.push_back(FromWindows1252(column));
    }
    choice->marks.resize(columns.size());
  }
  SetMarkedRows("lstColumnList", std::move(columns), choice == nullptr ? std::vector<bool>{} : choice->marks);
  const int mode = choice == nullptr ? kAllColumns : static_cast<int>(choice->columns) + 1;
  for (int option = kAllColumns; option <= kUpToColumn; ++option)
    SetValue("optGridSelect", option == mode ? 1 : 0, option);
  SetText("txtGridColumns", choice == nullptr || choice->up_to == 0 ? "" : std::to_string(choice->up_to));
}

void FrmViewLog::TakeGridChoice() {
  GridChoice* choice = CurrentGrid();
  if (choice == nullptr) return;
  for (int option = kAllColumns; option <= kUpToColumn; ++option) {
    if (At("optGridSelect", option).value == 1)
      choice->columns = static_cast<GridChoice::Columns>(option - 1);
  }
  choice->marks = At("lstColumnList").marks;
  const std::string_view number = Trim(Text("txtGridColumns"));
  choice->up_to = IsAllDigits(number) && number.size() < 4 ? std::stoi(std::string(number)) : 0;
  ShowFound();
}

}  // namespace tallwick
