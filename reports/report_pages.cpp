#include "reports/report_pages.h"

#include "core/text.h"

namespace tallwick {
namespace {

PrintStyle StyleOf(ReportRow::Kind kind) {
  switch (kind) {
    case ReportRow::Kind::kSubtotal:
      return PrintStyle::kTotal;
    case ReportRow::Kind::kRemark:
      return PrintStyle::kSmall;
    case ReportRow::Kind::kPlain:
      break;
  }
  return PrintStyle::kRow;
}

PrintRow Blank() {
  return {PrintStyle::kSmall, {}, {}, true};
}

PrintRow Caption(const std::string& text) {
  return {PrintStyle::kStrong, {}, {text}, true};
}

PrintSection SectionOf(const ReportTable& table) {
  PrintSection section;
  if (!table.page_caption.empty()) section.page_heading.push_back(Caption(table.page_caption));
  if (!table.caption.empty()) section.heading.push_back(Caption(table.caption));
  if (!table.headings.empty())
    section.heading.push_back({PrintStyle::kHeading, table.format, Split(table.headings, '|'), true});
  for (const ReportRow& row : table.rows) {
    const bool is_subtotal = row.kind == ReportRow::Kind::kSubtotal;
    if (is_subtotal && !section.rows.empty()) section.rows.back().with_next = true;
    section.rows.push_back(
        {StyleOf(row.kind), row.format.empty() ? table.format : row.format, row.cells, false});
  }
  return section;
}

}  // namespace

PrintDocument MakePages(const ReportDocument& report) {
  PrintDocument document;
  document.name = report.name;
  document.landscape = report.landscape;
  const std::string halves = report.landscape ? "<+7200|>+7200" : "<+5400|>+5400";
  document.header = {{PrintStyle::kHeader, {}, {HeadLine(report)}, true},
                     {PrintStyle::kSmall, halves, {VersionLine(report), report.group}, true},
                     Blank()};
  document.footer = report.origin.company;
  for (const ReportTable& table : report.tables) {
    if (!document.sections.empty()) document.sections.push_back({{}, {Blank()}});
    document.sections.push_back(SectionOf(table));
  }
  return document;
}

}  // namespace tallwick
