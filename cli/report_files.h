// Reports into the files that a command names with --rtf and --pdf.
#pragma once

#include <string>

#include <CLI/CLI.hpp>

#include "cli/office.h"
#include "reports/report_document.h"

namespace tallwick::cli {

// "" = not asked for.
struct ReportPaths {
  std::string rtf;
  std::string pdf;
};

void AddReportOptions(CLI::App* command, ReportPaths& paths);
// Of an option whose value is a file: "" is wrong usage.
CLI::Validator AFileName();

// Whether what is asked for can be written, for a command that changes something before it has the report:
// kDone, or kRefused after a message. Leaves nothing.
int ProveWritable(Office& office, const ReportPaths& paths);

// Writes what is asked for, and says where it is: the members "rtf" and "pdf", a line for a person. kDone, or
// kRefused after a message when a file could not be written.
int SaveReport(Office& office, const ReportDocument& report, const ReportPaths& paths);

}  // namespace tallwick::cli
