// Documents in files: a PDF has the pages of the layout, pictures show them, a file that cannot be written is
// told, and two hundred pages take no time.

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "print/pdf_document.h"
#include "print/pdf_file.h"
#include "reports/report_pages.h"
#include "tests/support/temp_folder.h"

namespace tallwick {
namespace {

std::string Contents(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

int Count(const std::string& text, const std::string& part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

PrintDocument ChecksReport(int rows) {
  ReportDocument report;
  report.title = "Checks";
  report.name = "Checks 2024-03-15";
  report.origin = {"Mary Klein", {{2024, 3, 15}, 9, 30, 0}, "1.00.0001", "Lakeside Title"};
  ReportTable& table = report.AddTable("Check|Dated|Payee|Amount|Accounting|Statement|Stat|Ctl|Vchr",
                                       ">+1000|^+1280|<+3160|>+1440|>+1120|>+1120|^+480|<+620|>+580");
  for (int i = 0; i < rows; ++i)
    table.Add({std::to_string(10000 + i), "Mar 15,2024", "LUCAS COUNTY RECORDER", "1,250.00", "3-15-2024",
               "3-31-2024", "Outstanding", "MARY K", "1001"});
  return MakePages(report);
}

TEST(DocumentFilesTest, WritesPdfFilesAndPicturesOfEveryPage) {
  const testing::TempFolder folder;
  PrintDocument document = ChecksReport(60);
  document.landscape = true;
  const std::string path = folder.Platform("checks.pdf");
  ASSERT_TRUE(WritePdf(document, path));
  const std::string pdf = Contents(path);
  EXPECT_EQ(pdf.rfind("%PDF", 0), 0U);
  EXPECT_EQ(Count(pdf, "/Type /Page\n"), 2);
  EXPECT_EQ(WritePictures(document, folder.Platform("checks"), 50), 2);
  EXPECT_EQ(Contents(folder.Platform("checks-2.png")).substr(1, 3), "PNG");
  EXPECT_FALSE(WritePdf(document, folder.Platform("no folder/checks.pdf")));
  EXPECT_EQ(WritePictures(document, folder.Platform("no folder/checks"), 50), 0);
  if (const char* keep = std::getenv("TALLWICK_KEEP_PDF")) std::filesystem::copy(path, keep);
}

TEST(DocumentFilesTest, AFileThatIsNotFinishedLeavesTheOldOne) {
  const testing::TempFolder folder;
  const std::string path = folder.Platform("report.pdf");
  std::ofstream(path) << "the old one";
  EXPECT_FALSE(WritePdfFile(path, "Report", [](QPdfWriter&) { return false; }));
  EXPECT_EQ(Contents(path), "the old one");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Platform("")), {}), 1);
  EXPECT_FALSE(WritePdf(ChecksReport(60), "/dev/full")) << "a device is not replaced";
  EXPECT_FALSE(std::filesystem::is_regular_file("/dev/full"));
}

TEST(DocumentFilesTest, TwoHundredPagesAreQuick) {
  const testing::TempFolder folder;
  const std::string path = folder.Platform("long.pdf");
  const PrintDocument document = ChecksReport(200 * 57);
  const auto start = std::chrono::steady_clock::now();
  ASSERT_TRUE(WritePdf(document, path));
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  const int pages = Count(Contents(path), "/Type /Page\n");
  std::cout << pages << " pages of PDF in " << took.count() << " s\n";
  EXPECT_GE(pages, 200);
  EXPECT_LT(took.count(), 20) << "two seconds in a release build on a machine at rest";
}

}  // namespace
}  // namespace tallwick
