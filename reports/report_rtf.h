// A report as an RTF document: heads and feet on every page, real tables with repeated headings, so that a
// word processor opens, edits and prints it.
#pragma once

#include <string>

#include "reports/report_document.h"

namespace tallwick {

// The whole document, plain ASCII: anything wider is escaped.
std::string MakeRtf(const ReportDocument& report);

}  // namespace tallwick
