// The journal under examination, and the way out when it cannot be used.
#include "store/engine/journal.h"

namespace tallwick::engine {

JournalState Journal::Examine(std::uint64_t* waiting) {
  *waiting = 0;
  if (!setup_.files.Exists(PathOf(kFileName))) return JournalState::kNone;
  const bool borrowed = !file_;
  int rc = kSuccess;
  if (borrowed) file_ = OpenOrRead(setup_.files, PathOf(kFileName), OpenMode::kReadWrite, &read_only_, &rc);
  const JournalState state = file_ ? ExamineOpen(waiting) : JournalState::kUnreadable;
  if (borrowed) file_.reset();
  return state;
}

JournalState Journal::ExamineOpen(std::uint64_t* waiting) {
  Mark mark;
  Mark applied;
  if (!ReadMarks(&mark, &applied)) return IsBlank() ? JournalState::kSettled : JournalState::kForeign;
  // A writer at work is about to do what waits.
  const int rc = writing_ ? static_cast<int>(kSuccess) : TakeWriterLock(false);
  if (rc != kSuccess) return rc == kLocked ? JournalState::kSettled : JournalState::kUnreadable;
  Entry entry;
  bool whole = ReadMarks(&mark, &applied);
  bool under_way = false;
  ReadProgress(&under_way);
  if (whole && under_way && !HasUnitAt(applied)) whole = CompleteMark(mark, &applied);
  while (whole && mark.number < applied.number) whole = ReadEntry(&mark, &entry);
  whole = whole && mark.number == applied.number && mark.position == applied.position;
  while (whole && ReadEntry(&applied, &entry)) *waiting += entry.is_note ? 0 : 1;
  if (!writing_) file_->Unlock(kWriterAt, 1);
  if (!whole) return JournalState::kDamaged;
  return *waiting > 0 ? JournalState::kWaiting : JournalState::kSettled;
}

int Journal::SetAside(std::string_view name) {
  if (file_) return kErrorOpenRefused;
  int rc = kSuccess;
  file_ = setup_.files.Open(PathOf(kFileName), OpenMode::kReadWrite, &rc);
  if (!file_) return rc;
  rc = file_->Lock(kPresenceAt, 1, LockKind::kExclusive);
  Mark first;
  Mark applied;
  // Entries before the mark must not be done again: those behind the damage, which are newer, would be
  // missing.
  if (rc == kSuccess && ReadMarks(&first, &applied)) rc = ApplyFrom(applied);
  if (rc == kSuccess) rc = setup_.files.Rename(PathOf(kFileName), PathOf(name));
  if (rc == kSuccess) rc = setup_.files.FlushFolder(folder_);
  file_.reset();
  return rc == kLocked ? static_cast<int>(kErrorOpenRefused) : rc;
}

}  // namespace tallwick::engine
