#include "print/sheet_files.h"

#include "core/text.h"
#include "print/application_in_need.h"
#include "print/pdf_file.h"
#include "print/picture_files.h"
#include "print/sheet_renderer.h"

namespace tallwick {
namespace {

// "checks.pdf", then "checks-2.pdf".
std::string NumberedPath(const std::string& path, int number) {
  if (number == 1) return path;
  constexpr std::string_view kEnding = ".pdf";
  const std::size_t stem = path.size() > kEnding.size() ? path.size() - kEnding.size() : path.size();
  const std::size_t end = EqualsIgnoreCase(path.substr(stem), kEnding) ? stem : path.size();
  return path.substr(0, end) + "-" + std::to_string(number) + path.substr(end);
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
  return WritePictureFiles(DrawSheetPictures(document, dots_per_inch), stem);
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
