// The file system port over files in memory, with the same promises as the real one: what it writes is
// durable when it returns, and its changes meet the faults planned for the disk.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "tests/support/engine_ports.h"
#include "tests/support/memory_files.h"

namespace tallwick::testing {

class MemoryFileSystem : public PlainPaths {
 public:
  explicit MemoryFileSystem(MemoryFiles& disk) : disk_(disk) {}

  std::string PlatformPath(std::string_view path) const override { return Swapped(path, '\\', '/'); }
  std::string HeldPath(std::string_view path) const override { return Swapped(path, '/', '\\'); }

  bool FileExists(std::string_view path) const override { return disk_.Exists(PlatformPath(path)); }
  std::optional<std::uint64_t> SizeOf(std::string_view path) const override {
    if (!FileExists(path)) return std::nullopt;
    return disk_.Get(PlatformPath(path)).size();
  }
  std::optional<std::string> Read(std::string_view path) const override {
    if (!FileExists(path)) return std::nullopt;
    return disk_.Get(PlatformPath(path));
  }
  bool Write(std::string_view path, std::string_view contents) override {
    const std::string fresh = PlatformPath(path) + ".new";
    int code = engine::kSuccess;
    {
      const auto file = disk_.Open(fresh, engine::OpenMode::kCreate, &code);
      if (file) code = file->WriteAt(0, contents.data(), contents.size());
      if (file && code == engine::kSuccess) code = file->Flush();
    }
    if (code == engine::kSuccess && RenameOnDisk(fresh, PlatformPath(path))) return true;
    disk_.Remove(fresh);
    return false;
  }
  bool Copy(std::string_view from, std::string_view to, const GoesOn&) override {
    const auto contents = Read(from);
    return contents && Write(to, *contents);
  }
  bool Rename(std::string_view from, std::string_view to) override {
    return RenameOnDisk(PlatformPath(from), PlatformPath(to));
  }
  bool Remove(std::string_view path) override {
    if (FileExists(path)) disk_.Remove(PlatformPath(path));
    return !FileExists(path);
  }

 private:
  static std::string Swapped(std::string_view path, char from, char to) {
    std::string text(path);
    std::replace(text.begin(), text.end(), from, to);
    return text;
  }
  bool RenameOnDisk(const std::string& from, const std::string& to) {
    return disk_.Rename(from, to) == engine::kSuccess && disk_.FlushFolder("/data") == engine::kSuccess;
  }

  MemoryFiles& disk_;
};

}  // namespace tallwick::testing
