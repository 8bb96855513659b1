// The print module, loaded when a command writes a PDF file.
#pragma once

#include <string_view>

#include "core/message_boxes.h"
#include "core/print_document.h"
#include "core/sheet.h"

namespace tallwick::cli {

// Writes a document to a file of this path (in the platform's form); false when it cannot be written.
using PdfWriter = bool (*)(const PrintDocument& document, const char* path);

// Makes a printer of sheets that writes into files, the first to this path; the caller's to delete. The boxes
// must outlive it.
using SheetPrinterMaker = SheetPrinter* (*)(const char* path, MessageBoxes* boxes);

inline constexpr std::string_view kNoPrintModule =
    "PDF files need the print module, which is not installed with this escrowctl.";

// Null where the module is not installed.
PdfWriter LoadPdfWriter();
SheetPrinterMaker LoadSheetPrinterMaker();

}  // namespace tallwick::cli
