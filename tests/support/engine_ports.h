// The ports an engine stands on, held still: one date, one workstation, paths taken as they are given.
#pragma once

#include <string>
#include <string_view>

#include "core/file_system.h"
#include "store/engine/codebase.h"
#include "tests/support/fakes.h"

namespace tallwick::testing {

// Only paths are answered: an engine asks a FileSystem for nothing else.
class PlainPaths : public FileSystem {
 public:
  std::string PlatformPath(std::string_view path) const override { return std::string(path); }
  std::string HeldPath(std::string_view path) const override { return std::string(path); }

  bool FolderExists(std::string_view) const override { return true; }
  bool FolderIsReadable(std::string_view) const override { return true; }
  bool FileExists(std::string_view) const override { return false; }
  bool IsMissing(std::string_view path) const override { return !FileExists(path); }
  bool CreateFolder(std::string_view) override { return false; }
  bool RemoveFolder(std::string_view) override { return false; }
  std::optional<std::string> Read(std::string_view) const override { return std::nullopt; }
  bool Write(std::string_view, std::string_view) override { return false; }
  bool Append(std::string_view, std::string_view) override { return false; }
  bool Copy(std::string_view, std::string_view, const GoesOn&) override { return false; }
  bool Rename(std::string_view, std::string_view) override { return false; }
  bool Remove(std::string_view) override { return false; }
  std::vector<std::string> List(std::string_view, std::string_view) const override { return {}; }
  std::optional<DateTime> Modified(std::string_view) const override { return std::nullopt; }
  std::optional<std::uint64_t> SizeOf(std::string_view) const override { return std::nullopt; }
};

// The ports together, for an engine over any file layer.
struct EnginePorts {
  FakeClock clock;
  FakeWorkstation workstation;
  PlainPaths paths;

  engine::EngineSetup Over(engine::FileLayer& files) { return {clock, workstation, paths, files}; }
};

}  // namespace tallwick::testing
