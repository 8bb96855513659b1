#include "store/engine/folder_gate.h"

#include <cstdio>

#include "store/engine/file_swap.h"

namespace tallwick::engine {
namespace {

constexpr std::int64_t kMaxListBytes = std::int64_t{4} << 20;
// Whoever passes the gate holds its byte for the length of one call.
constexpr int kEnterTries = 100;
constexpr int kPassTries = 10;
constexpr int kEnterWaitMs = 2;

std::string PathIn(const std::string& folder, std::string_view name) {
  std::string path = folder;
  path += '/';
  path += name;
  return path;
}

std::string Seal(std::string_view text) {
  std::uint64_t sum = 0xCBF29CE484222325U;
  for (char c : text) sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  char line[32];
  std::snprintf(line, sizeof line, "end %016llx\n", static_cast<unsigned long long>(sum));
  return line;
}

std::string BuildList(const FolderChange& change) {
  std::string text;
  for (const std::string& name : change.replaced) text += "+" + name + "\n";
  for (const std::string& name : change.removed) text += "-" + name + "\n";
  return text + Seal(text);
}

bool ReadLine(std::string_view line, FolderChange* change) {
  if (line.size() < 2 || line.find_first_of("/\\") != std::string_view::npos) return false;
  if (line[0] == '+') change->replaced.emplace_back(line.substr(1));
  if (line[0] == '-') change->removed.emplace_back(line.substr(1));
  return line[0] == '+' || line[0] == '-';
}

// False for a list that was never finished: then nothing has been changed by it.
bool ReadList(File& file, FolderChange* change) {
  const std::int64_t size = file.Size();
  if (size <= 0 || size > kMaxListBytes) return false;
  std::string text(static_cast<std::size_t>(size), '\0');
  if (file.ReadAt(0, text.data(), text.size()) != size) return false;
  std::size_t from = 0;
  for (std::size_t to = 0; (to = text.find('\n', from)) != std::string::npos; from = to + 1) {
    const std::string_view line = std::string_view(text).substr(from, to - from);
    if (line.starts_with("end ")) return text.substr(from, to - from + 1) == Seal(text.substr(0, from));
    if (!ReadLine(line, change)) return false;
  }
  return false;
}

int Clear(File& file) {
  const int rc = file.Truncate(0);
  return rc == kSuccess ? file.Flush() : rc;
}

// Every step may have been taken before.
int CarryOut(FileLayer& files, const std::string& folder, const FolderChange& change) {
  for (const std::string& name : change.removed) {
    const std::string path = PathIn(folder, name);
    if (!files.Exists(path)) continue;
    if (const int rc = files.Remove(path); rc != kSuccess) return rc;
  }
  for (const std::string& name : change.replaced) {
    const std::string path = PathIn(folder, name);
    if (!files.Exists(NewFileName(path))) continue;
    if (const int rc = files.Rename(NewFileName(path), path); rc != kSuccess) return rc;
  }
  return files.FlushFolder(folder);
}

// Does what the list in an owned gate says, if it says anything whole, and empties it.
int FinishList(FileLayer& files, const std::string& folder, File& gate) {
  if (gate.Size() == 0) return kSuccess;
  FolderChange change;
  int rc = kSuccess;
  if (ReadList(gate, &change)) rc = CarryOut(files, folder, change);
  return rc == kSuccess ? Clear(gate) : rc;
}

}  // namespace

int FolderGate::Enter() {
  for (int tries = 0; tries < kEnterTries; ++tries) {
    int rc = kSuccess;
    auto file = files_.Open(Path(), OpenMode::kOpenOrCreate, &rc);
    if (!file) return rc;
    rc = file->Lock(0, 1, LockKind::kExclusive);
    if (rc == kLocked) {
      clock_.Sleep(kEnterWaitMs);
      continue;
    }
    if (rc != kSuccess) return rc;
    if (!file->IsStill(Path())) continue;  // its owner has just left and taken it away
    if (rc = FinishList(files_, folder_, *file); rc != kSuccess) return rc;
    file_ = std::move(file);
    return kSuccess;
  }
  return kErrorOpenRefused;
}

FolderGate::~FolderGate() {
  if (file_ && !unfinished_) files_.Remove(Path());
}

int FolderGate::Replace(const FolderChange& change) {
  if (!file_ || unfinished_) return kErrorParameter;
  const std::string list = BuildList(change);
  int rc = static_cast<std::int64_t>(list.size()) > kMaxListBytes ? static_cast<int>(kErrorTooLarge)
                                                                  : static_cast<int>(kSuccess);
  for (const std::string& name : change.replaced) {
    if (!files_.Exists(NewFileName(PathIn(folder_, name)))) rc = kErrorRename;
  }
  // The names of the new files and of the gate must be there when the list is.
  if (rc == kSuccess) rc = files_.FlushFolder(folder_);
  if (rc == kSuccess) rc = file_->WriteAt(0, list.data(), list.size());
  if (rc == kSuccess) rc = file_->Flush();
  if (rc != kSuccess) {
    // Where not even that can be written, the list may be whole: then it counts.
    unfinished_ = Clear(*file_) != kSuccess;
    if (unfinished_) return rc;
    for (const std::string& name : change.replaced) files_.Remove(NewFileName(PathIn(folder_, name)));
    return rc;
  }
  unfinished_ = true;
  rc = CarryOut(files_, folder_, change);
  if (rc == kSuccess) rc = Clear(*file_);
  unfinished_ = rc != kSuccess;
  return rc;
}

namespace {

// One look at the gate. kLocked: somebody holds it, perhaps only to tidy up.
int LookAtGate(FileLayer& files, const std::string& folder, const std::string& path) {
  int rc = kSuccess;
  bool read_only = false;
  const auto gate = OpenOrRead(files, path, OpenMode::kReadWrite, &read_only, &rc);
  if (!gate) return files.Exists(path) ? rc : static_cast<int>(kSuccess);
  if (read_only) {
    rc = gate->Lock(0, 1, LockKind::kShared);
    // A list that is whole says that the old files do not count any more.
    FolderChange change;
    return rc == kSuccess && ReadList(*gate, &change) ? static_cast<int>(kErrorReadOnly) : rc;
  }
  rc = gate->Lock(0, 1, LockKind::kExclusive);
  if (rc != kSuccess) return rc;
  if (!gate->IsStill(path)) return kLocked;  // its owner has left; somebody else may have come
  rc = FinishList(files, folder, *gate);
  if (rc == kSuccess) files.Remove(path);  // one that stays is open to all
  return rc;
}

}  // namespace

bool IsGateClosed(FileLayer& files, const std::string& folder) {
  const std::string path = PathIn(folder, FolderGate::kFileName);
  if (!files.Exists(path)) return false;
  int rc = kSuccess;
  const auto gate = files.Open(path, OpenMode::kReadOnly, &rc);
  if (!gate) return false;
  FolderChange change;
  return gate->Lock(0, 1, LockKind::kShared) == kLocked || ReadList(*gate, &change);
}

int PassGate(FileLayer& files, Clock& clock, const std::string& folder) {
  const std::string path = PathIn(folder, FolderGate::kFileName);
  for (int tries = 0; tries < kPassTries; ++tries) {
    if (tries > 0) clock.Sleep(kEnterWaitMs);
    if (!files.Exists(path)) return kSuccess;
    if (const int rc = LookAtGate(files, folder, path); rc != kLocked) return rc;
  }
  return kErrorOpenRefused;
}

}  // namespace tallwick::engine
