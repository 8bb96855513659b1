// The system's files, with failures where a test wants them.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/system_ports.h"

namespace tallwick::testing {

class FaultyFiles : public FileSystem {
 public:
  // Asked before each change with what it is ("copy", "write", "remove folder", …) and the path changed; true
  // makes it fail without effect.
  std::function<bool(std::string_view change, std::string_view path)> fails;
  // Asked before each reading of a whole file; true makes it fail, as another program that holds it does.
  std::function<bool(std::string_view path)> unreadable;
  // Called after each copy, which it may spoil.
  std::function<void(std::string_view path)> copied;

  std::string PlatformPath(std::string_view path) const override { return real_.PlatformPath(path); }
  std::string HeldPath(std::string_view path) const override { return real_.HeldPath(path); }
  bool FolderExists(std::string_view folder) const override { return real_.FolderExists(folder); }
  bool FolderIsReadable(std::string_view folder) const override { return real_.FolderIsReadable(folder); }
  bool FileExists(std::string_view path) const override { return real_.FileExists(path); }
  bool IsMissing(std::string_view path) const override { return real_.IsMissing(path); }
  bool CreateFolder(std::string_view folder) override {
    return !Fails("create folder", folder) && real_.CreateFolder(folder);
  }
  bool RemoveFolder(std::string_view folder) override {
    return !Fails("remove folder", folder) && real_.RemoveFolder(folder);
  }
  std::optional<std::string> Read(std::string_view path) const override {
    return unreadable && unreadable(path) ? std::nullopt : real_.Read(path);
  }
  std::optional<std::string> ReadPart(std::string_view path, std::uint64_t offset,
                                      std::size_t length) const override {
    return real_.ReadPart(path, offset, length);
  }
  bool Write(std::string_view path, std::string_view contents) override {
    return !Fails("write", path) && real_.Write(path, contents);
  }
  bool Append(std::string_view path, std::string_view contents) override {
    return !Fails("append", path) && real_.Append(path, contents);
  }
  bool Copy(std::string_view from, std::string_view to, const GoesOn& goes_on) override {
    const bool done = !Fails("copy", to) && real_.Copy(from, to, goes_on);
    if (done && copied) copied(to);
    return done;
  }
  bool Rename(std::string_view from, std::string_view to) override {
    return !Fails("rename", to) && real_.Rename(from, to);
  }
  bool Remove(std::string_view path) override { return !Fails("remove", path) && real_.Remove(path); }
  std::vector<std::string> List(std::string_view folder, std::string_view pattern) const override {
    return real_.List(folder, pattern);
  }
  std::optional<DateTime> Modified(std::string_view path) const override { return real_.Modified(path); }
  std::optional<std::uint64_t> SizeOf(std::string_view path) const override { return real_.SizeOf(path); }

 private:
  bool Fails(std::string_view change, std::string_view path) const { return fails && fails(change, path); }

  FileSystem& real_ = SystemFileSystem();
};

}  // namespace tallwick::testing
