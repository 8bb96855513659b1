// A report as the rows that are laid out on pages: for preview, paper and PDF.
#pragma once

#include "core/print_document.h"
#include "reports/report_document.h"

namespace tallwick {

PrintDocument MakePages(const ReportDocument& report);

}  // namespace tallwick
