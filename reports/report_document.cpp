#include "reports/report_document.h"

#include "core/text_format.h"

namespace tallwick {

ReportTable& ReportDocument::AddTable(std::string_view headings, std::string_view format,
                                      std::string_view caption) {
  tables.push_back({std::string(caption), std::string(headings), std::string(format), {}});
  return tables.back();
}

void ReportDocument::AddText(std::string_view text, ReportRow::Kind kind) {
  const std::string width = landscape ? "<+14400" : std::string(kFullLine);
  tables.push_back({{}, {}, width, {{kind, {}, {std::string(text)}}}});
}

std::string HeadLine(const ReportDocument& report) {
  std::string line = report.title;
  if (!report.origin.user.empty()) line += ", prep by " + report.origin.user;
  return line + ", " + FormatDate(report.origin.when.date, "mmmm d, yyyy") + " " +
         FormatDateTime(report.origin.when, "h:mm AMPM");
}

std::string VersionLine(const ReportDocument& report) {
  return "Version: " + report.origin.version;
}

std::string ReportAmount(Currency amount) {
  return FormatNumber(amount, "###,###,###,##0.00");
}

std::string ReportDate(const Date& date) {
  return FormatDate(date, "mmm d,yyyy");
}

std::string CountedCaption(std::string_view caption, int count) {
  return std::string(caption) + "  (" + std::to_string(count) + ")";
}

}  // namespace tallwick
