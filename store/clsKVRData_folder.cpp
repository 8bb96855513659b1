// The company folder as a whole: its writers kept off, the folder taken, its files replaced together.

#include "store/clsKVRData.h"
#include "store/engine/file_swap.h"
#include "store/engine/folder_gate.h"

namespace tallwick {

namespace {

// As the engine names a folder: without a separator at its end.
std::string EngineFolder(const FileSystem& files, std::string_view folder) {
  return engine::TableFolder(files.PlatformPath(WithBackslash(folder) + "."));
}

}  // namespace

int clsKVRData::HoldWriters(std::string_view folder) {
  if (!engine_) return NotOpen();
  return Finish(engine::code4holdWriters(*engine_, EngineFolder(ports_.file_system, folder)));
}

void clsKVRData::ReleaseWriters() {
  if (engine_) engine::code4releaseWriters(*engine_);
}

int clsKVRData::TakeFolder(std::string_view folder, std::string_view table_pattern) {
  if (!engine_) return NotOpen();
  const std::string held = WithBackslash(folder);
  std::vector<std::string> tables;
  for (const std::string& name : ports_.file_system.List(held, table_pattern))
    tables.push_back(ports_.file_system.PlatformPath(held + name));
  return Finish(engine::code4takeFolder(*engine_, EngineFolder(ports_.file_system, held), tables));
}

void clsKVRData::ReleaseFolder() {
  if (engine_) engine::code4releaseFolder(*engine_);
}

int clsKVRData::MayEnter(std::string_view folder, std::string* holder) {
  if (!engine_) return NotOpen();
  const int code = engine::code4mayEnter(*engine_, EngineFolder(ports_.file_system, folder));
  *holder = code == engine::kErrorOpenRefused ? engine::code4lockUserId(*engine_) : std::string();
  return Finish(code);
}

int clsKVRData::CopyFile(std::string_view from, std::string_view to, const engine::Progress& progress) {
  const auto goes_on = [&progress] { return !progress || progress(0, 1); };
  return Finish(engine::CopyFile(ports_.files, ports_.file_system.PlatformPath(from),
                                 ports_.file_system.PlatformPath(to), goes_on));
}

std::string clsKVRData::NewFormOf(std::string_view path) const {
  return engine::NewFileName(ports_.file_system.PlatformPath(path));
}

int clsKVRData::ReplaceFiles(std::span<const std::string> replaced, std::span<const std::string> removed) {
  if (!engine_) return NotOpen();
  const auto name_of = [this](const std::string& path) {
    return std::string(FileNameOf(ports_.file_system.PlatformPath(path)));
  };
  engine::FolderChange change;
  for (const std::string& path : replaced) change.replaced.push_back(name_of(path));
  for (const std::string& path : removed) change.removed.push_back(name_of(path));
  return Finish(engine::code4replaceFiles(*engine_, change));
}

bool clsKVRData::ReplaceUnfinished() const {
  return engine_ && engine::code4replaceUnfinished(*engine_);
}

bool clsKVRData::IsInUse(std::string_view name) {
  return engine_ && engine::d4inUse(*engine_, name) != engine::kSuccess;
}

}  // namespace tallwick
