#include "cli/pdf_module.h"

#include <dlfcn.h>

namespace tallwick::cli {

namespace {

// Found by the program's own search path, which names the folder of its modules. It stays loaded to the end.
void* Find(const char* name) {
  void* module = dlopen("libtallwick_print.so", RTLD_NOW | RTLD_LOCAL);
  return module == nullptr ? nullptr : dlsym(module, name);
}

}  // namespace

PdfWriter LoadPdfWriter() {
  return reinterpret_cast<PdfWriter>(Find("tallwick_write_pdf"));
}

SheetPrinterMaker LoadSheetPrinterMaker() {
  return reinterpret_cast<SheetPrinterMaker>(Find("tallwick_sheet_printer"));
}

}  // namespace tallwick::cli
