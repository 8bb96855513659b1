#include "store/engine/file.h"

namespace tallwick::engine {

std::unique_ptr<File> OpenOrRead(FileLayer& files, const std::string& path, OpenMode mode, bool* read_only,
                                 int* code) {
  auto file = files.Open(path, mode, code);
  if (file || *code != kErrorReadOnly || !files.Exists(path)) return file;
  file = files.Open(path, OpenMode::kReadOnly, code);
  *read_only = *read_only || file != nullptr;
  return file;
}

}  // namespace tallwick::engine
