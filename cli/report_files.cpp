#include "cli/report_files.h"

#include "cli/pdf_module.h"
#include "reports/report_pages.h"
#include "reports/report_rtf.h"

namespace tallwick::cli {
namespace {

constexpr int kMostTries = 100;  // of names for a trial, which a killed program may have left

int NotWritten(Office& office, const std::string& path) {
  return office.Refuse("The file " + path +
                       " could not be written.  Make sure that you may write there and that there is room, "
                       "or name another place.");
}

int NoPrintModule(Office& office) {
  return office.Refuse(std::string(kNoPrintModule) + "  Use --rtf.");
}

int Tell(Office& office, std::string_view kind, const std::string& path, bool written) {
  if (!written) return NotWritten(office, path);
  office.Out().Set(kind, path);
  office.Out().Line("Written: " + path);
  return kDone;
}

// Files are written beside the old one and then take its place, but not that of one that may not be written.
bool CanBeWritten(FileSystem& files, const std::string& path) {
  if (files.FolderExists(path)) return false;
  if (files.FileExists(path) && !files.Append(path, "")) return false;
  const bool is_device = !files.FileExists(path) && !files.IsMissing(path);
  std::string beside = path + ".try";
  for (int number = 2; !is_device && !files.IsMissing(beside); ++number) {
    if (number > kMostTries) return false;
    beside = path + ".try" + std::to_string(number);
  }
  return is_device || (files.Write(beside, "") && files.Remove(beside));
}

}  // namespace

void AddReportOptions(CLI::App* command, ReportPaths& paths) {
  command->add_option("--rtf", paths.rtf, "Write the report to this RTF file")->check(AFileName());
  command->add_option("--pdf", paths.pdf, "Write the report to this PDF file")->check(AFileName());
}

CLI::Validator AFileName() {
  return {[](std::string& value) { return value.empty() ? "a file must be named" : std::string(); }, "FILE"};
}

int ProveWritable(Office& office, const ReportPaths& paths) {
  for (const std::string& path : {paths.rtf, paths.pdf}) {
    if (!path.empty() && !CanBeWritten(office.Files(), path)) return NotWritten(office, path);
  }
  return paths.pdf.empty() || LoadPdfWriter() != nullptr ? kDone : NoPrintModule(office);
}

int SaveReport(Office& office, const ReportDocument& report, const ReportPaths& paths) {
  int status = kDone;
  if (!paths.rtf.empty())
    status = Tell(office, "rtf", paths.rtf, office.Files().Write(paths.rtf, MakeRtf(report)));
  if (paths.pdf.empty() || status != kDone) return status;
  const PdfWriter write_pdf = LoadPdfWriter();
  if (write_pdf == nullptr) return NoPrintModule(office);
  return Tell(office, "pdf", paths.pdf, write_pdf(MakePages(report), paths.pdf.c_str()));
}

}  // namespace tallwick::cli
