#include "print/pdf_document.h"

#include "print/application_in_need.h"
#include "print/page_renderer.h"
#include "print/pdf_file.h"
#include "print/picture_files.h"

namespace tallwick {
bool WritePdf(const PrintDocument& document, const std::string& path) {
  return WritePdfFile(path, document.name, [&](QPdfWriter& writer) {
    SetPaper(document, writer);
    return DrawDocument(document, writer);
  });
}

int WritePictures(const PrintDocument& document, const std::string& stem, int dots_per_inch) {
  const ApplicationInNeed application;
  return WritePictureFiles(DrawPictures(document, dots_per_inch), stem);
}

}  // namespace tallwick
