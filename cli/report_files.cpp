#include "cli/report_files.h"

#include "cli/pdf_module.h"
#include "reports/report_pages.h"
#include "reports/report_rtf.h"

namespace tallwick::cli {
namespace {

int Tell(Office& office, std::string_view kind, const std::string& path, bool written) {
  if (!written) {
    office.Out().Fail("The file " + path +
                      " could not be written.  Make sure that you may write there and that "
                      "there is room, or name another place.");
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
  const PdfWriter write_pdf = LoadPdfWriter();
  if (write_pdf == nullptr) {
    office.Out().Fail(
        "PDF files need the print module, which is not installed with this escrowctl.  Use --rtf.");
    return kRefused;
  }
  return Tell(office, "pdf", paths.pdf, write_pdf(MakePages(report), paths.pdf.c_str()));
}

}  // namespace tallwick::cli
