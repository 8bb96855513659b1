#include "store/engine/file.h"

#include <vector>

namespace tallwick::engine {

std::unique_ptr<File> OpenOrRead(FileLayer& files, const std::string& path, OpenMode mode, bool* read_only,
                                 int* code) {
  auto file = files.Open(path, mode, code);
  if (file || *code != kErrorReadOnly || !files.Exists(path)) return file;
  file = files.Open(path, OpenMode::kReadOnly, code);
  *read_only = *read_only || file != nullptr;
  return file;
}

namespace {

int CopyBytes(File& source, File& target, const std::function<bool()>& goes_on) {
  std::vector<char> block(std::size_t{1} << 20);
  for (std::int64_t at = 0;;) {
    const std::int64_t got = source.ReadAt(at, block.data(), block.size());
    if (got < 0) return static_cast<int>(got);
    if (got == 0) return target.Flush();
    if (const int rc = target.WriteAt(at, block.data(), static_cast<std::size_t>(got)); rc != kSuccess)
      return rc;
    if (goes_on && !goes_on()) return kStopped;
    at += got;
  }
}

}  // namespace

int CopyFile(FileLayer& files, const std::string& from, const std::string& to,
             const std::function<bool()>& goes_on) {
  int rc = kSuccess;
  const auto source = files.Open(from, OpenMode::kReadOnly, &rc);
  if (!source) return rc;
  const std::string fresh = to + "~";
  {
    const auto target = files.Open(fresh, OpenMode::kCreate, &rc);
    if (!target) return rc;
    rc = CopyBytes(*source, *target, goes_on);
  }
  if (rc == kSuccess) rc = files.Rename(fresh, to);
  if (rc != kSuccess) files.Remove(fresh);
  return rc;
}

}  // namespace tallwick::engine
