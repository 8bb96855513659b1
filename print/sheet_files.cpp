#include "print/sheet_files.h"

#include "print/application_in_need.h"
#include "print/pdf_file.h"
#include "print/sheet_renderer.h"

namespace tallwick {
namespace {

constexpr int kSmallest = 0;  // the "quality" of a PNG file is its size

// "checks.pdf", then "checks-2.pdf".
std::string NumberedPath(const std::string& path, int number) {
  const std::size_t dot = path.rfind(".pdf");
  if (number == 1) return path;
  return path.substr(0, dot) + "-" + std::to_string(number) + (dot == std::string::npos ? "" : ".pdf");
}

}  // namespace

bool WriteSheetsPdf(const SheetDocument& document, const std::string& path) {
  return WritePdfFile(path, document.name, [&](QPdfWriter& writer) {
    SetSheetPaper(document.width, document.height, writer);
    return DrawSheets(document, writer);
  });
}

int WriteSheetPictures(const SheetDocument& document, const std::string& stem, int dots_per_inch) {
  const ApplicationInNeed application;
  int pages = 0;
  for (const QImage& picture : DrawSheetPictures(document, dots_per_inch)) {
    const QString path = QString::fromStdString(stem + "-" + std::to_string(++pages) + ".png");
    if (!picture.save(path, "PNG", kSmallest)) return 0;
  }
  return pages;
}

bool SheetFilePrinter::HasFont(std::string_view family) {
  const ApplicationInNeed application;
  return HasLetters(family);
}

bool SheetFilePrinter::Print(const SheetMaker& make) {
  const ApplicationInNeed application;
  const SheetDocument document = make(LetterMeasure(), SheetOrder());
  const std::string path = NumberedPath(path_, printed_ + 1);
  if (!WriteSheetsPdf(document, path)) {
    boxes_->Critical(document.name,
                     "The file " + path + " could not be written.  Name a place that you may write to.");
    return false;
  }
  ++printed_;
  return true;
}

}  // namespace tallwick
