// Work on a company folder as a whole: keeping its writers off while it is copied, having it alone, and
// replacing its files together.
#include <algorithm>

#include "store/engine/file_swap.h"
#include "store/engine/instance.h"

namespace tallwick::engine {
namespace {

// A table in use by anyone, this instance included, has its presence byte taken; programs that know nothing
// of that byte show by the format's locks that they are at work, or by having the file open. Asked of the
// file itself, so that a damaged table can be answered for as well.
int ProveFree(FileLayer& files, const std::string& table) {
  int rc = kSuccess;
  const auto data = files.Open(table, OpenMode::kReadWrite, &rc);
  if (!data) return files.Exists(table) ? rc : static_cast<int>(kSuccess);
  rc = data->Lock(kTablePresenceAt, 1, LockKind::kExclusive);
  if (rc == kSuccess)
    rc = data->Lock(kPlainAppendAt, kIndexedAppendAt - kPlainAppendAt + 1, LockKind::kExclusive);
  if (rc == kSuccess && data->IsOpenElsewhere()) rc = kLocked;
  return rc == kLocked ? static_cast<int>(kErrorOpenRefused) : rc;
}

}  // namespace

int code4holdWriters(Code4& code, const std::string& folder) {
  if (code.held_journal != nullptr || code.unit_depth > 0) return code.Fail(kErrorParameter);
  int rc = code.gate != nullptr ? static_cast<int>(kSuccess) : code.PassInto(folder);
  if (rc != kSuccess) return code.Fail(rc);
  code.JournalOf(folder);
  std::shared_ptr<Journal> journal = code.journals[folder];
  rc = code.WriterLockFailed(journal->BeginWriting(), folder);
  if (rc != kSuccess) return code.Fail(rc);
  code.held_note = std::make_unique<LockNotes>(code.setup, folder + "/" + std::string(Journal::kFileName));
  code.held_note->Note(0);
  code.held_journal = std::move(journal);
  rc = code.held_journal->Settle();
  if (rc != kSuccess) code4releaseWriters(code);
  return code.Fail(rc);
}

void code4releaseWriters(Code4& code) {
  if (code.held_journal != nullptr) code.held_journal->EndWriting();
  code.held_note.reset();
  code.held_journal.reset();
}

int d4inUse(Code4& code, std::string_view path) {
  return ProveFree(code.setup.files, TablePath(code, path));
}

int code4takeFolder(Code4& code, const std::string& folder, const std::vector<std::string>& tables) {
  if (code.gate != nullptr || code.unit_depth > 0) return code.Fail(kErrorParameter);
  auto gate = std::make_unique<FolderGate>(code.setup.files, code.setup.clock, folder);
  int rc = gate->Enter();
  auto note = std::make_unique<LockNotes>(code.setup, folder + "/" + std::string(FolderGate::kFileName));
  if (rc == kSuccess) note->Note(0);
  for (const std::string& table : tables) {
    if (rc == kSuccess) rc = FinishSwap(code.setup.files, table, FilesOf(code, table), true);
    if (rc == kSuccess) rc = ProveFree(code.setup.files, table);
  }
  if (rc != kSuccess) return code.Fail(rc);
  code.gate = std::move(gate);
  code.gate_note = std::move(note);
  return rc;
}

int code4mayEnter(Code4& code, const std::string& folder) {
  return code.Fail(code.PassInto(folder));
}

void code4releaseFolder(Code4& code) {
  code.gate_note.reset();
  code.gate.reset();
}

int code4replaceFiles(Code4& code, const FolderChange& change) {
  if (code.gate == nullptr) return code.Fail(kErrorParameter);
  // What the journal holds belongs to the old files, and must never meet the new ones.
  QuietJournal quiet(code, code.gate->Folder());
  int rc = quiet.Begin();
  if (rc == kSuccess) rc = code.gate->Replace(change);
  return code.Fail(rc);
}

bool code4replaceUnfinished(const Code4& code) {
  return code.gate != nullptr && code.gate->IsUnfinished();
}

}  // namespace tallwick::engine
