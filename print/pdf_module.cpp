// The door of the print module, which a program without windows loads only when it writes a PDF file: Qt
// would cost it more time at every start than its work takes.
#include "print/pdf_document.h"
#include "print/sheet_files.h"

extern "C" bool tallwick_write_pdf(const tallwick::PrintDocument& document, const char* path) {
  return tallwick::WritePdf(document, path);
}

extern "C" tallwick::SheetPrinter* tallwick_sheet_printer(const char* path, tallwick::MessageBoxes* boxes) {
  return new tallwick::SheetFilePrinter(path, boxes);
}
