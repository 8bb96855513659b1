// The part of the file system port that the standard library gives on every platform. A platform adds the
// form of its paths and the durable operations: write, append, copy and rename.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/file_system.h"

namespace tallwick {

class PortableFileSystem : public FileSystem {
 public:
  bool FolderExists(std::string_view folder) const override;
  bool FolderIsReadable(std::string_view folder) const override;
  bool FileExists(std::string_view path) const override;
  bool IsMissing(std::string_view path) const override;
  bool CreateFolder(std::string_view folder) override;
  bool RemoveFolder(std::string_view folder) override;
  std::optional<std::string> Read(std::string_view path) const override;
  std::optional<std::string> ReadPart(std::string_view path, std::uint64_t offset,
                                      std::size_t length) const override;
  bool Remove(std::string_view path) override;
  std::vector<std::string> List(std::string_view folder, std::string_view pattern) const override;
  std::optional<DateTime> Modified(std::string_view path) const override;
  std::optional<std::uint64_t> SizeOf(std::string_view path) const override;

 protected:
  // The path as the standard library takes it, found whatever the case of its letters.
  std::filesystem::path NativePath(std::string_view path) const;
};

// Both ways between UTF-8 and the standard library's paths, on every platform.
std::filesystem::path PathOfUtf8(std::string_view text);
std::string Utf8OfPath(const std::filesystem::path& path);

}  // namespace tallwick
