#include "print/pdf_document.h"

#include <vector>

#include "print/application_in_need.h"
#include "print/page_renderer.h"
#include "print/pdf_file.h"

namespace tallwick {
namespace {

constexpr int kSmallest = 0;  // the "quality" of a PNG file is its size

}  // namespace

bool WritePdf(const PrintDocument& document, const std::string& path) {
  return WritePdfFile(path, document.name, [&](QPdfWriter& writer) {
    SetPaper(document, writer);
    return DrawDocument(document, writer);
  });
}

int WritePictures(const PrintDocument& document, const std::string& stem, int dots_per_inch) {
  const ApplicationInNeed application;
  int pages = 0;
  for (const QImage& picture : DrawPictures(document, dots_per_inch)) {
    const QString path = QString::fromStdString(stem + "-" + std::to_string(++pages) + ".png");
    if (!picture.save(path, "PNG", kSmallest)) return 0;
  }
  return pages;
}

}  // namespace tallwick
