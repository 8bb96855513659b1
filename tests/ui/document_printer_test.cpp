// Documents drawn: a PDF has the pages of the layout, and a file that cannot be written is told.

#include "ui/document_printer.h"

#include <gtest/gtest.h>

#include <QFile>

#include "core/print_pages.h"
#include "tests/support/temp_folder.h"

namespace tallwick {
namespace {

TEST(DocumentPrinterTest, WritesPdfFilesWithEveryPage) {
  const testing::TempFolder folder;
  PrintDocument document;
  document.name = "Audit Trail FNB 2024-03-15";
  document.landscape = true;
  document.rows.push_back({PrintStyle::kTitle, "", {"Audit Trail Log: FNB"}, true});
  document.heading_at = 1;
  document.heading.push_back(
      {PrintStyle::kHeading, "<+2880|<+3600|>+7920", {"Date", "Event", "Value"}, false});
  for (int i = 0; i < 60; ++i)
    document.rows.push_back({PrintStyle::kRow,
                             "<+2880|<+3600|>+7920",
                             {"Mar 04, 2024 @ 2:07 PM", "txtCheckPayee", "was: A now: B"},
                             false});
  const QString path = QString::fromStdString(folder.Platform("audit.pdf"));
  ASSERT_TRUE(WritePdf(document, path));
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray pdf = file.readAll();
  EXPECT_TRUE(pdf.startsWith("%PDF"));
  EXPECT_EQ(pdf.count("/Type /Page\n"), 2) << "pages";
  EXPECT_FALSE(WritePdf(document, QString::fromStdString(folder.Platform("no folder/audit.pdf"))));
  if (const char* keep = std::getenv("TALLWICK_KEEP_PDF")) QFile::copy(path, keep);
}

}  // namespace
}  // namespace tallwick
