#include "core/portable_file_system.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <system_error>

#include "core/system_ports.h"
#include "core/text.h"

namespace tallwick {

namespace fs = std::filesystem;

fs::path PathOfUtf8(std::string_view text) {
  return fs::path(std::u8string(text.begin(), text.end()));
}

std::string Utf8OfPath(const fs::path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

fs::path PortableFileSystem::NativePath(std::string_view path) const {
  return PathOfUtf8(PlatformPath(path));
}

bool PortableFileSystem::FolderExists(std::string_view folder) const {
  std::error_code error;
  return fs::is_directory(NativePath(folder), error);
}

// To list names and to reach what they name are two rights.
bool PortableFileSystem::FolderIsReadable(std::string_view folder) const {
  std::error_code cannot_list;
  std::error_code cannot_reach;
  const fs::path path = NativePath(folder);
  static_cast<void>(fs::directory_iterator(path, cannot_list));
  static_cast<void>(fs::status(path / ".", cannot_reach));
  return !cannot_list && !cannot_reach;
}

bool PortableFileSystem::FileExists(std::string_view path) const {
  std::error_code error;
  return fs::is_regular_file(NativePath(path), error);
}

bool PortableFileSystem::IsMissing(std::string_view path) const {
  std::error_code error;
  return fs::symlink_status(NativePath(path), error).type() == fs::file_type::not_found;
}

bool PortableFileSystem::CreateFolder(std::string_view folder) {
  std::error_code error;
  fs::create_directories(NativePath(WithoutBackslash(folder)), error);
  return FolderExists(folder);
}

bool PortableFileSystem::RemoveFolder(std::string_view folder) {
  std::error_code error;
  const fs::path path = NativePath(WithoutBackslash(folder));
  if (!path.has_filename()) return false;  // an empty path or a root is never meant
  if (fs::is_directory(path, error)) fs::remove_all(path, error);
  return !fs::exists(path, error);
}

std::optional<std::string> PortableFileSystem::Read(std::string_view path) const {
  if (!FileExists(path)) return std::nullopt;
  std::ifstream file(NativePath(path), std::ios::binary);
  std::string contents;
  constexpr std::size_t kBlock = std::size_t{1} << 20;
  while (file) {  // a log may be long: whole blocks, and no trust in a size that grows while we read
    const std::size_t had = contents.size();
    contents.resize(had + kBlock);
    file.read(contents.data() + had, static_cast<std::streamsize>(kBlock));
    contents.resize(had + static_cast<std::size_t>(file.gcount()));
  }
  return file.is_open() && !file.bad() ? std::optional(std::move(contents)) : std::nullopt;
}

std::optional<std::string> PortableFileSystem::ReadPart(std::string_view path, std::uint64_t offset,
                                                        std::size_t length) const {
  if (!FileExists(path)) return std::nullopt;
  std::ifstream file(NativePath(path), std::ios::binary);
  std::string part(length, '\0');
  file.seekg(static_cast<std::streamoff>(offset));
  file.read(part.data(), static_cast<std::streamsize>(length));
  if (!file.is_open() || file.bad()) return std::nullopt;
  part.resize(static_cast<std::size_t>(file.gcount()));
  return part;
}

bool PortableFileSystem::Remove(std::string_view path) {
  std::error_code error;
  const fs::path native = NativePath(path);
  if (fs::is_directory(native, error)) return false;
  fs::remove(native, error);
  return !error;
}

std::vector<std::string> PortableFileSystem::List(std::string_view folder, std::string_view pattern) const {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(NativePath(folder), error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code gone;
    std::string name = Utf8OfPath(entry->path().filename());
    if (entry->is_regular_file(gone) && MatchesPattern(name, pattern)) names.push_back(std::move(name));
  }
  std::sort(names.begin(), names.end(), [](const std::string& left, const std::string& right) {
    const std::string upper_left = ToUpper(left);
    const std::string upper_right = ToUpper(right);
    return upper_left != upper_right ? upper_left < upper_right : left < right;
  });
  return names;
}

std::optional<DateTime> PortableFileSystem::Modified(std::string_view path) const {
  std::error_code error;
  const fs::file_time_type changed = fs::last_write_time(NativePath(path), error);
  if (error) return std::nullopt;
  const auto moment = std::chrono::file_clock::to_sys(changed);
  return LocalTime(std::chrono::system_clock::to_time_t(
      std::chrono::time_point_cast<std::chrono::system_clock::duration>(moment)));
}

std::optional<std::uint64_t> PortableFileSystem::SizeOf(std::string_view path) const {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(NativePath(path), error);
  return error ? std::nullopt : std::optional<std::uint64_t>(size);
}

}  // namespace tallwick
