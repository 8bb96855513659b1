#include "cli/pdf_module.h"

#include <windows.h>

namespace tallwick::cli {

PdfWriter LoadPdfWriter() {
  const HMODULE module = LoadLibraryW(L"tallwick_print.dll");
  if (module == nullptr) return nullptr;
  return reinterpret_cast<PdfWriter>(GetProcAddress(module, "tallwick_write_pdf"));
}

}  // namespace tallwick::cli
