// The print module, loaded when a command writes a PDF file.
#pragma once

#include "core/print_document.h"

namespace tallwick::cli {

// Writes a document to a file of this path (in the platform's form); false when it cannot be written.
using PdfWriter = bool (*)(const PrintDocument& document, const char* path);

// Null where the module is not installed.
PdfWriter LoadPdfWriter();

}  // namespace tallwick::cli
