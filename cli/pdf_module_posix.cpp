#include "cli/pdf_module.h"

#include <dlfcn.h>

namespace tallwick::cli {

// Found by the program's own search path, which names the folder of its modules. It stays loaded to the end.
PdfWriter LoadPdfWriter() {
  void* module = dlopen("libtallwick_print.so", RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) return nullptr;
  return reinterpret_cast<PdfWriter>(dlsym(module, "tallwick_write_pdf"));
}

}  // namespace tallwick::cli
