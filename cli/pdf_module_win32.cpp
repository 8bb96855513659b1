#include "cli/pdf_module.h"

#include <windows.h>

namespace tallwick::cli {

namespace {

FARPROC Find(const char* name) {
  const HMODULE module = LoadLibraryW(L"tallwick_print.dll");
  return module == nullptr ? nullptr : GetProcAddress(module, name);
}

}  // namespace

PdfWriter LoadPdfWriter() {
  return reinterpret_cast<PdfWriter>(Find("tallwick_write_pdf"));
}

SheetPrinterMaker LoadSheetPrinterMaker() {
  return reinterpret_cast<SheetPrinterMaker>(Find("tallwick_sheet_printer"));
}

}  // namespace tallwick::cli
