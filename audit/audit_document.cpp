#include "audit/audit_document.h"

#include <algorithm>

#include "core/encoding.h"
#include "core/text.h"
#include "core/text_format.h"

namespace tallwick {
namespace {

using GridRow = std::vector<std::string_view>;

struct ColumnFormats {
  const char* entry;
  const char* event;
};

// The printable width of a letter page is 7.5 inches, 10 across.
constexpr ColumnFormats kPortrait{"<+4320|<+3240|<+3240", "<+2880|<+2520|<+5400"};
constexpr ColumnFormats kLandscape{"<+5760|<+4320|<+4320", "<+2880|<+3600|<+7920"};

std::string Joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "" : "; ") + text;
  return all;
}

const GridChoice* ChoiceOf(const GridView& view, std::string_view name) {
  for (const GridChoice& choice : view.chosen) {
    if (choice.name == name) return &choice;
  }
  return nullptr;
}

bool ShowsColumn(const GridChoice* choice, std::size_t column) {
  if (choice == nullptr || choice->columns == GridChoice::Columns::kAll) return true;
  if (choice->columns == GridChoice::Columns::kUpTo) return static_cast<int>(column) < choice->up_to;
  return column < choice->marks.size() && choice->marks[column];
}

std::string CellsText(const GridRow& row, const GridChoice* choice) {
  std::string text;
  bool first = true;
  for (std::size_t column = 0; column < row.size(); ++column) {
    if (!ShowsColumn(choice, column)) continue;
    text += (first ? "" : " | ") + FromWindows1252(row[column]);
    first = false;
  }
  return text;
}

void AddGridRows(const std::vector<GridRow>& rows, const std::vector<GridRow>& others,
                 std::string_view caption, const GridChoice* choice, bool entire,
                 std::vector<AuditLine>& lines) {
  for (const GridRow& row : rows) {
    if (!entire && std::find(others.begin(), others.end(), row) != others.end()) continue;
    lines.push_back({"", std::string(caption) + CellsText(row, choice)});
  }
}

std::vector<AuditLine> LinesOfGrid(const AuditGrid& grid, const GridView& view) {
  const std::string name = FromWindows1252(grid.name);
  const GridChoice* choice = ChoiceOf(view, name);
  if (!view.chosen.empty() && choice == nullptr) return {};
  std::vector<AuditLine> lines{{"Grid " + name, CellsText(grid.columns, choice)}};
  AddGridRows(grid.old_rows, grid.new_rows, "Old Grid Value: ", choice, view.entire, lines);
  AddGridRows(grid.new_rows, grid.old_rows, "New Grid Value: ", choice, view.entire, lines);
  return lines;
}

PrintRow Line(std::string text, PrintStyle style = PrintStyle::kText) {
  return {style, "", {std::move(text)}, true};
}

void AddParameters(const AuditCriteria& criteria, std::vector<PrintRow>& rows) {
  std::vector<std::string> kinds;
  for (AuditEventKind kind : criteria.kinds) kinds.emplace_back(AuditEventKindName(kind));
  const std::pair<std::string_view, std::string> parameters[] = {
      {"Reference Number = ", std::string(Trim(criteria.reference))},
      {"TX Code: ", Joined(criteria.tx_names)},
      {"Login Name = ", std::string(Trim(criteria.login))},
      {"Computer Name = ", std::string(Trim(criteria.computer))},
      {"Entries from: ", DisplayDate(criteria.from)},
      {"Entries to: ", DisplayDate(criteria.to)},
      {"Controls: ", Joined(criteria.controls)},
      {"Entries: ", Joined(kinds)}};
  rows.push_back(Line("Search Parameters:"));
  for (const auto& [caption, value] : parameters) {
    if (!value.empty()) rows.push_back(Line("    " + std::string(caption) + value));
  }
}

void AddEntry(const AuditReport& report, const AuditEntry& entry, const ColumnFormats& formats,
              std::vector<PrintRow>& rows) {
  rows.push_back(Line(""));
  rows.push_back(
      {PrintStyle::kStrong,
       formats.entry,
       {FromWindows1252(entry.reference), FromWindows1252(entry.login), FromWindows1252(entry.computer)},
       true});
  rows.push_back({PrintStyle::kRow, formats.event, {MomentText(entry), FromWindows1252(entry.tx), ""}, true});
  for (const AuditEvent& event : report.log.Events(entry)) {
    for (AuditLine& line : LinesOfEvent(report.log, event, report.view))
      rows.push_back(
          {PrintStyle::kRow, formats.event, {"", std::move(line.event), std::move(line.value)}, false});
  }
  rows.back().with_next = false;
}

}  // namespace

std::vector<AuditLine> LinesOfEvent(const AuditLog& log, const AuditEvent& event, const GridView& view) {
  if (event.kind == AuditEventKind::kGrid) return LinesOfGrid(log.Grid(event), view);
  const std::string value = FromWindows1252(event.value);
  if (event.kind == AuditEventKind::kEdit) return {{FromWindows1252(event.name), value}};
  return {{std::string(AuditEventKindName(event.kind)), value}};
}

std::string MomentText(const AuditEntry& entry) {
  if (!entry.dated) return FromWindows1252(entry.date_text);
  return FormatDate(entry.when.date, "mmm dd, yyyy") + " @ " + FormatDateTime(entry.when, "h:mm AMPM");
}

PrintDocument MakeAuditDocument(const AuditReport& report) {
  const ColumnFormats& formats = report.landscape ? kLandscape : kPortrait;
  PrintDocument document;
  document.name = "Audit Trail " + report.bank_code + " " + FormatDate(report.today, "yyyy-mm-dd");
  document.landscape = report.landscape;
  PrintSection criteria;
  criteria.rows.push_back(
      Line("Audit Trail Log: " + report.bank_code + "\\Audit_Trail.log", PrintStyle::kTitle));
  criteria.rows.push_back(Line("Last modified: " + FormatDateTime(report.modified, "m/d/yyyy") +
                               FormatDateTime(report.modified, " h:n am/pm")));
  AddParameters(report.criteria, criteria.rows);
  criteria.rows.push_back(Line(""));
  PrintSection entries;
  entries.heading = {
      {PrintStyle::kHeading, formats.entry, {"Reference", "Login Name", "Computer Name"}, false},
      {PrintStyle::kHeading, formats.event, {"Date @ Time", "Event", "Value"}, false}};
  if (report.found.empty()) entries.rows.push_back(Line("No entry meets the search."));
  for (std::uint32_t place : report.found)
    AddEntry(report, report.log.Entries()[place], formats, entries.rows);
  document.sections = {std::move(criteria), std::move(entries)};
  return document;
}

}  // namespace tallwick
