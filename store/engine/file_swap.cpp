#include "store/engine/file_swap.h"

#include <algorithm>

#include "core/file_system.h"
#include "store/engine/folder_gate.h"

namespace tallwick::engine {
namespace {

std::string ListName(const std::string& table) {
  const std::size_t dot = table.rfind('.');
  return table.substr(0, dot) + ".SWP~";
}

// The list: one file name a line, then "end", without which it was never finished.
std::string BuildList(const std::vector<std::string>& paths) {
  std::string text;
  for (const std::string& path : paths) text.append(FileNameOf(path)) += "\n";
  return text + "end\n";
}

bool ReadList(File& file, std::vector<std::string>* names) {
  const std::int64_t size = file.Size();
  if (size <= 0 || size > 65536) return false;
  std::string text(static_cast<std::size_t>(size), '\0');
  if (file.ReadAt(0, text.data(), text.size()) != size) return false;
  std::size_t from = 0;
  for (std::size_t to = 0; (to = text.find('\n', from)) != std::string::npos; from = to + 1) {
    const std::string name = text.substr(from, to - from);
    if (name == "end") return true;
    if (name.empty() || name.find_first_of("/\\") != std::string::npos) return false;
    names->push_back(name);
  }
  return false;
}

int WriteList(FileLayer& files, const std::string& list, const std::vector<std::string>& paths) {
  int rc = kSuccess;
  const auto file = files.Open(list, OpenMode::kCreate, &rc);
  if (!file) return rc;
  const std::string text = BuildList(paths);
  rc = file->WriteAt(0, text.data(), text.size());
  return rc == kSuccess ? file->Flush() : rc;
}

}  // namespace

std::string TableFolder(const std::string& path) {
  const std::size_t slash = path.find_last_of("/\\");
  return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

std::string NewFileName(const std::string& path) {
  return path + "~";
}

namespace {

// Each file whose new form still stands beside it is replaced.
int RenameAll(FileLayer& files, const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    if (!files.Exists(NewFileName(path))) continue;
    if (const int rc = files.Rename(NewFileName(path), path); rc != kSuccess) return rc;
  }
  return kSuccess;
}

bool HasNewFiles(FileLayer& files, const std::vector<std::string>& paths) {
  return std::any_of(paths.begin(), paths.end(),
                     [&](const std::string& path) { return files.Exists(NewFileName(path)); });
}

// One that cannot be removed does no harm: without a list that names it nobody uses it.
void RemoveNewFiles(FileLayer& files, const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    if (files.Exists(NewFileName(path))) files.Remove(NewFileName(path));
  }
}

int EndSwap(FileLayer& files, const std::string& table) {
  int rc = files.FlushFolder(TableFolder(table));
  if (rc == kSuccess) rc = files.Remove(ListName(table));
  // A list that came back after a power cut would rename the half-written files of a later pack.
  return rc == kSuccess ? files.FlushFolder(TableFolder(table)) : rc;
}

}  // namespace

int SwapFiles(FileLayer& files, const std::string& table, const std::vector<std::string>& paths) {
  const std::string list = ListName(table);
  // A list that names what is not there would mix old files with new ones.
  for (const std::string& path : paths) {
    if (!files.Exists(NewFileName(path))) return kErrorRename;
  }
  int rc = files.FlushFolder(TableFolder(table));
  if (rc == kSuccess) rc = WriteList(files, list, paths);
  if (rc == kSuccess) rc = files.FlushFolder(TableFolder(table));
  if (rc != kSuccess) {
    files.Remove(list);
    RemoveNewFiles(files, paths);
    return rc;
  }
  rc = RenameAll(files, paths);
  return rc == kSuccess ? EndSwap(files, table) : rc;
}

namespace {

// What a list, found while nobody swaps, asks for.
int FinishListed(FileLayer& files, const std::string& table) {
  int rc = kSuccess;
  const auto file = files.Open(ListName(table), OpenMode::kReadOnly, &rc);
  if (!file) return rc;
  std::vector<std::string> names;
  const bool whole = ReadList(*file, &names);
  std::vector<std::string> paths;
  paths.reserve(names.size());
  for (const std::string& name : names) paths.push_back(TableFolder(table) + "/" + name);
  if (whole) {
    rc = RenameAll(files, paths);
  } else {
    RemoveNewFiles(files, paths);
  }
  return rc == kSuccess ? EndSwap(files, table) : rc;
}

}  // namespace

bool IsSwapListed(FileLayer& files, const std::string& table) {
  return files.Exists(ListName(table));
}

int FinishSwap(FileLayer& files, const std::string& table, const std::vector<std::string>& paths,
               bool alone) {
  const bool listed = IsSwapListed(files, table);
  if (!listed && !HasNewFiles(files, paths)) return kSuccess;
  // Whoever swaps, or is about to, has the table for himself; while that is so, nothing here is ours.
  int rc = kSuccess;
  bool read_only = false;
  const auto data = OpenOrRead(files, table, OpenMode::kReadWrite, &read_only, &rc);
  if (!data) return rc;
  if (read_only) {
    // New files without a list do no harm, and wait for somebody who may remove them.
    if (!listed) return kSuccess;
    const bool held = data->Lock(kTablePresenceAt, 1, LockKind::kShared) == kLocked;
    return held ? static_cast<int>(kErrorOpenRefused) : static_cast<int>(kErrorReadOnly);
  }
  rc = data->Lock(kTablePresenceAt, 1, LockKind::kExclusive);
  // A lock on a file that a swap has just replaced says nothing about the table.
  const bool busy = rc == kLocked || (rc == kSuccess && !data->IsStill(table));
  if (busy) return listed ? static_cast<int>(kErrorOpenRefused) : static_cast<int>(kSuccess);
  if (rc == kSuccess && files.Exists(ListName(table))) rc = FinishListed(files, table);
  // While somebody has the folder for himself they may be new files of his; and a lock on what has just been
  // replaced keeps nobody from making some.
  if (rc == kSuccess && data->IsStill(table) && (alone || !IsGateClosed(files, TableFolder(table))))
    RemoveNewFiles(files, paths);
  return rc;
}

}  // namespace tallwick::engine
