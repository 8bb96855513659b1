// The door of the print module, which a program without windows loads only when it writes a PDF file: Qt
// would cost it more time at every start than its work takes.
#include "print/pdf_document.h"

extern "C" bool tallwick_write_pdf(const tallwick::PrintDocument& document, const char* path) {
  return tallwick::WritePdf(document, path);
}
