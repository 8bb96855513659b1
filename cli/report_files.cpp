#include "cli/report_files.h"

#ifdef TALLWICK_HAS_PRINT
#include "print/pdf_document.h"
#endif
#include "reports/report_pages.h"
#include "reports/report_rtf.h"

namespace tallwick::cli {
namespace {

#ifdef TALLWICK_HAS_PRINT
constexpr bool kHasPrint = true;
#else
constexpr bool kHasPrint = false;
bool WritePdf(const PrintDocument&, const std::string&) {
  return false;
}
#endif

int Tell(Office& office, std::string_view kind, const std::string& path, bool written) {
  if (!written) {
    office.Out().Fail("The file " + path + " could not be written.  Name a place that you may write to.");
    return kRefused;
  }
  office.Out().Set(kind, path);
  office.Out().Line("Written: " + path);
  return kDone;
}

}  // namespace

void AddReportOptions(CLI::App* command, ReportPaths& paths) {
  command->add_option("--rtf", paths.rtf, "Write the report to this RTF file");
  command->add_option("--pdf", paths.pdf, "Write the report to this PDF file");
}

int SaveReport(Office& office, const ReportDocument& report, const ReportPaths& paths) {
  int status = kDone;
  if (!paths.rtf.empty())
    status = Tell(office, "rtf", paths.rtf, office.Files().Write(paths.rtf, MakeRtf(report)));
  if (paths.pdf.empty() || status != kDone) return status;
  if (!kHasPrint) {
    office.Out().Fail("This escrowctl was built without printing.  Use --rtf, or the desktop's build.");
    return kRefused;
  }
  return Tell(office, "pdf", paths.pdf, WritePdf(MakePages(report), paths.pdf));
}

}  // namespace tallwick::cli
