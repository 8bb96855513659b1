// The journal under examination, and the way out when it cannot be used.
#include <map>

#include "store/engine/journal.h"

namespace tallwick::engine {

JournalFindings Journal::Examine() {
  if (!setup_.files.Exists(PathOf(kFileName))) return {};
  int rc = kSuccess;
  file_ = OpenOrRead(setup_.files, PathOf(kFileName), OpenMode::kReadWrite, &read_only_, &rc);
  JournalFindings findings{JournalState::kUnreadable, 0, {}};
  if (file_) findings = ExamineOpen();
  file_.reset();
  return findings;
}

JournalFindings Journal::ExamineOpen() {
  Mark mark;
  Mark applied;
  if (!ReadMarks(&mark, &applied))
    return {IsBlank() ? JournalState::kSettled : JournalState::kForeign, 0, {}};
  // A writer at work is about to do what waits.
  const int rc = TakeWriterLock(false);
  if (rc != kSuccess) return {rc == kLocked ? JournalState::kSettled : JournalState::kUnreadable, 0, {}};
  Entry entry;
  bool whole = ReadMarks(&mark, &applied);
  const Mark first = mark;
  bool under_way = false;
  ReadProgress(&under_way);
  if (whole && under_way && !HasUnitAt(applied)) whole = CompleteMark(mark, &applied);
  while (whole && mark.number < applied.number) whole = ReadEntry(&mark, &entry);
  whole = whole && mark.number == applied.number && mark.position == applied.position;
  JournalFindings findings = whole ? LookAtWaiting(WillRedo() ? first : applied, applied)
                                   : JournalFindings{JournalState::kDamaged, 0, {}};
  file_->Unlock(kWriterAt, 1);
  return findings;
}

bool Journal::WillRedo() {
  if (FlushHasFailed()) return true;
  if (!MayHaveLostPower() || file_->Lock(kPresenceAt, 1, LockKind::kExclusive) != kSuccess) return false;
  file_->Unlock(kPresenceAt, 1);
  return true;
}

JournalFindings Journal::LookAtWaiting(const Mark& redone, const Mark& applied) {
  JournalFindings findings{JournalState::kSettled, 0, {}};
  std::map<std::string, std::int64_t> lengths;
  Entry entry;
  Mark behind = redone;
  for (Mark at = redone; ReadEntry(&behind, &entry); at = behind) {
    if (entry.is_note) continue;
    findings.waiting += at.number >= applied.number ? 1 : 0;
    std::vector<JournalFileChange> changes;
    if (!ParseEntry(entry.payload, &changes)) return {JournalState::kDamaged, 0, {}};
    for (const auto& change : changes) {
      const auto [known, is_new] = lengths.try_emplace(change.name, -1);
      if (is_new) known->second = LengthOf(change.name);
      if (known->second < 0 && IsIndexName(change.name)) continue;
      if (known->second >= 0) known->second = LengthAfter(change, known->second);
      if (known->second < 0) findings.missing = change.name;
    }
  }
  if (HasUnitBehind(behind)) return {JournalState::kDamaged, 0, {}};
  if (findings.waiting > 0) findings.state = JournalState::kWaiting;
  if (!findings.missing.empty()) findings.state = JournalState::kFileMissing;
  return findings;
}

std::int64_t Journal::LengthOf(const std::string& name) {
  int rc = kSuccess;
  const auto file = setup_.files.Open(PathOf(name), OpenMode::kReadOnly, &rc);
  return file ? file->Size() : -1;
}

int Journal::SetAside(std::string_view name, const std::vector<std::string>& files) {
  if (file_) return kErrorOpenRefused;
  int rc = kSuccess;
  file_ = setup_.files.Open(PathOf(kFileName), OpenMode::kReadWrite, &rc);
  if (!file_) return rc;
  rc = WaitForLock(*file_, kDoorAt);
  const bool redo = rc == kSuccess && WillRedo();
  if (rc == kSuccess) rc = file_->Lock(kPresenceAt, 1, LockKind::kExclusive);
  gives_up_ = true;
  Mark first;
  Mark applied;
  if (rc == kSuccess && ReadMarks(&first, &applied)) {
    // Entries before the mark must not be done again where the chain is broken: those behind the damage,
    // which are newer, would be missing.
    rc = ApplyFrom(redo && IsWhole(first, applied) ? first : applied);
  }
  if (rc == kSuccess) rc = FlushFiles({files.begin(), files.end()});
  // What an earlier one holds is perhaps still to be compared with paper.
  std::string kept(name);
  for (int number = 2; rc == kSuccess && setup_.files.Exists(PathOf(kept)); ++number)
    kept = std::string(name) + std::to_string(number);
  if (rc == kSuccess) rc = setup_.files.Rename(PathOf(kFileName), PathOf(kept));
  if (rc == kSuccess) rc = setup_.files.FlushFolder(folder_);
  file_.reset();
  return rc == kLocked ? static_cast<int>(kErrorOpenRefused) : rc;
}

}  // namespace tallwick::engine
