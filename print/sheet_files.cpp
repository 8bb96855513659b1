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

SheetFilePrinter::SheetFilePrinter(std::string path, MessageBoxes* boxes)
    : path_(std::move(path)), boxes_(boxes) {}

SheetFilePrinter::~SheetFilePrinter() = default;

void SheetFilePrinter::NeedApplication() {
  if (!application_) application_ = std::make_unique<ApplicationInNeed>();
}

bool SheetFilePrinter::HasFont(std::string_view family) {
  NeedApplication();
  return HasLetters(family);
}

const SheetMeasure& SheetFilePrinter::Measure() {
  NeedApplication();
  static const LetterMeasure measure;
  return measure;
}

SheetEnd SheetFilePrinter::Print(const SheetMaker& make) {
  NeedApplication();
  const SheetDocument document = make(LetterMeasure(), {});
  const std::string path = NumberedPath(path_, printed_ + 1);
  if (!WriteSheetsPdf(document, path)) {
    boxes_->Critical(document.name, "The file " + path +
                                        " could not be written.  Make sure that you may write there and that "
                                        "there is room, or name another place.");
    return SheetEnd::kNothing;
  }
  ++printed_;
  return SheetEnd::kPrinted;
}

}  // namespace tallwick
