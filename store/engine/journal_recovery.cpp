// The journal as it is read: what a reader must know of units under way, and what is done with the entries
// that a writer left behind.
#include <algorithm>
#include <array>
#include <set>

#include "store/engine/byte_order.h"
#include "store/engine/index_file.h"
#include "store/engine/journal.h"

namespace tallwick::engine {
namespace {

bool IsIndexName(std::string_view name) {
  return name.size() > 4 &&
         (name.substr(name.size() - 4) == ".cdx" || name.substr(name.size() - 4) == ".CDX");
}

}  // namespace

bool Journal::ReadMarks(Mark* first, Mark* applied) {
  std::array<std::uint8_t, 32> header{};
  if (file_->ReadAt(0, header.data(), header.size()) != static_cast<std::int64_t>(header.size()))
    return false;
  if (std::memcmp(header.data(), kMagic.data(), kMagic.size()) != 0) return false;
  const std::uint64_t position = Load64(&header[8]);
  if (position < kHeaderBytes || position > (std::uint64_t{1} << 40)) return false;
  *applied = Mark{static_cast<std::int64_t>(position), Load64(&header[16])};
  *first = Mark{kHeaderBytes, Load64(&header[24])};
  return true;
}

bool Journal::IsBlank() {
  std::array<std::uint8_t, kHeaderBytes> head{};
  const auto got = file_->ReadAt(0, head.data(), head.size());
  return got >= 0 && (got < kBootAt || std::all_of(head.begin(), head.end(), [](auto b) { return b == 0; }));
}

bool Journal::ReadEntry(Mark* mark, Entry* entry) {
  JournalHead head;
  if (!ReadHead(*mark, &head) || head.payload_bytes > static_cast<std::uint64_t>(kMaxPayload)) return false;
  const std::int64_t start = mark->position + kEntryHead;
  const auto length = static_cast<std::int64_t>(head.payload_bytes);
  if (start + length > file_->Size()) return false;
  entry->is_note = head.is_note;
  entry->payload.resize(head.payload_bytes);
  if (file_->ReadAt(start, entry->payload.data(), head.payload_bytes) != length) return false;
  if (EntryChecksum(head.number, entry->payload) != head.checksum) return false;
  *mark = Mark{start + length, mark->number + 1};
  return true;
}

bool Journal::ReadHead(const Mark& mark, JournalHead* head) {
  std::array<std::uint8_t, kEntryHead> bytes{};
  return file_->ReadAt(mark.position, bytes.data(), bytes.size()) == kEntryHead && head->Parse(bytes) &&
         head->number == mark.number;
}

bool Journal::IsWhole(Mark from, const Mark& to) {
  Entry entry;
  while (from.number < to.number && ReadEntry(&from, &entry)) {
  }
  // A position alone may have been written when the number was not.
  return from.number == to.number;
}

bool Journal::HasEntryAt(const Mark& mark) {
  JournalHead head;
  return ReadHead(mark, &head);
}

bool Journal::HasOrphans() {
  Mark first;
  Mark applied;
  bool under_way = false;
  if (file_ && !writing_) ReadProgress(&under_way);
  if (under_way) return true;
  if (writing_ || !file_ || !ReadMarks(&first, &applied) || !HasEntryAt(applied)) return false;
  if (file_->Lock(kWriterAt, 1, LockKind::kExclusive) != kSuccess) return false;  // its writer is at work
  file_->Unlock(kWriterAt, 1);
  // An entry that is not whole was never flushed, and waits for no one.
  Entry entry;
  return ReadMarks(&first, &applied) && ReadEntry(&applied, &entry);
}

int Journal::Recover() {
  if (writing_) return kSuccess;
  if (const int rc = Attach(); rc != kSuccess || !file_) return rc;
  Mark first;
  Mark applied;
  bool under_way = false;
  ReadProgress(&under_way);
  if (!ReadMarks(&first, &applied) || (!under_way && !HasEntryAt(applied))) return kSuccess;
  if (read_only_) return RecoverReadOnly();
  int rc = TakeWriterLock(false);
  if (rc == kLocked) return kSuccess;  // a live writer is at work and will finish
  if (rc != kSuccess) return rc;
  if (ReadMarks(&first, &applied)) rc = Finish(first, applied, false);
  file_->Unlock(kWriterAt, 1);
  return rc;
}

int Journal::RecoverReadOnly() {
  int rc = TakeWriterLock(false);
  if (rc != kSuccess) return rc == kLocked ? static_cast<int>(kSuccess) : rc;
  Mark first;
  Mark applied;
  Entry entry;
  bool under_way = false;
  ReadProgress(&under_way);
  if (ReadMarks(&first, &applied) && (under_way || ReadEntry(&applied, &entry))) rc = kErrorReadOnly;
  file_->Unlock(kWriterAt, 1);
  return rc;
}

// --- Readers ---

std::uint64_t Journal::ReadProgress(bool* under_way) {
  std::array<std::uint8_t, kHeaderBytes - 16> bytes{};
  const auto got = file_->ReadAt(16, bytes.data(), bytes.size());
  const std::uint64_t next = got == static_cast<std::int64_t>(bytes.size()) ? Load64(&bytes[0]) : 0;
  *under_way = next != 0 && Load64(&bytes[kBegunAt - 16]) == next;
  return next;
}

int Journal::AwaitUnit() {
  bool under_way = true;
  for (int tries = 0; tries < kWriterTries; ++tries) {
    if (const int rc = Recover(); rc != kSuccess) return rc;  // its writer may have died
    ReadProgress(&under_way);
    if (!under_way) return kSuccess;
    if (tries >= kEagerTries) setup_.clock.Sleep(kWriterWaitMs);
  }
  return kErrorJournal;
}

bool Journal::WasQuiet(int* rc) {
  *rc = kSuccess;
  if (writing_) return true;  // nobody else can
  if (!file_) {
    if (!setup_.files.Exists(PathOf(kFileName))) return true;  // no unit was ever written here
    *rc = OpenFile();
    return false;
  }
  bool under_way = false;
  const std::uint64_t next = ReadProgress(&under_way);
  const bool quiet = !under_way && next == quiet_at_;
  quiet_at_ = next;
  if (under_way) *rc = AwaitUnit();
  return quiet;
}

// --- Applying what stands in the journal ---

int Journal::ApplyFrom(Mark mark) {
  Entry entry;
  std::vector<Mark> notes;             // that no entry has followed yet
  std::vector<JournalLength> lengths;  // of the last of them
  end_ = mark;
  for (Mark at = mark; ReadEntry(&mark, &entry); at = mark) {
    if (entry.is_note) {
      lengths.clear();
      if (!ParseNote(entry.payload, &lengths)) return kErrorJournal;
      notes.push_back(at);
      continue;
    }
    int rc = ApplyEntry(entry.payload, notes.empty() ? at.number : notes.front().number);
    if (rc == kSuccess) rc = WriteMarks(nullptr, mark);
    if (rc != kSuccess) return rc;
    notes.clear();
    end_ = mark;
  }
  return notes.empty() ? static_cast<int>(kSuccess) : CutBack(notes, lengths, false);
}

bool Journal::HasUnitAt(Mark mark) {
  Entry entry;
  while (ReadEntry(&mark, &entry)) {
    if (!entry.is_note) return true;
  }
  return false;
}

bool Journal::CompleteMark(const Mark& first, Mark* applied) {
  Entry entry;
  Mark at = first;
  while (at.position < applied->position && ReadEntry(&at, &entry)) {
  }
  if (at.position != applied->position || at.number <= applied->number) return false;
  *applied = at;
  return true;
}

int Journal::Finish(const Mark& first, Mark applied, bool all) {
  bool under_way = false;
  ReadProgress(&under_way);
  if (under_way && !HasUnitAt(applied) && !CompleteMark(first, &applied)) return kErrorJournal;
  const int rc = ApplyFrom(all ? first : applied);
  return rc == kSuccess && under_way ? WriteMarks(nullptr, end_) : rc;
}

int Journal::OpenToApply(const std::string& name, std::unique_ptr<File>* file) {
  int rc = kSuccess;
  *file = setup_.files.Open(PathOf(name), OpenMode::kReadWrite, &rc);
  // A table that was deleted since needs nothing any more.
  if (!*file) return setup_.files.Exists(PathOf(name)) ? rc : static_cast<int>(kSuccess);
  for (int tries = 0; IsIndexName(name); ++tries) {
    rc = (*file)->Lock(kIndexLockAt, 1, LockKind::kExclusive);
    if (rc != kLocked || tries == kWriterTries) return rc;
    setup_.clock.Sleep(kWriterWaitMs);
  }
  return kSuccess;
}

int Journal::ApplyEntry(std::span<const std::uint8_t> payload, std::uint64_t unit) {
  std::vector<JournalFileChange> changes;
  if (!ParseEntry(payload, &changes)) return kErrorJournal;
  std::vector<std::unique_ptr<File>> files(changes.size());
  int rc = kSuccess;
  for (std::size_t i = 0; i < changes.size() && rc == kSuccess; ++i)
    rc = OpenToApply(changes[i].name, &files[i]);
  // Only with every index lock in hand: a reader that holds one waits for a unit that has begun.
  if (rc == kSuccess) rc = WriteBegun(unit);
  for (std::size_t i = 0; i < changes.size(); ++i) {
    if (!files[i]) continue;
    for (const auto& extent : changes[i].extents)
      if (rc == kSuccess) rc = files[i]->WriteAt(extent.offset, extent.bytes.data(), extent.bytes.size());
  }
  return rc;
}

int Journal::Checkpoint() {
  std::set<std::string> names;
  Entry entry;
  Mark mark;
  Mark applied;
  if (!ReadMarks(&mark, &applied)) return kErrorJournal;
  if (const int rc = ApplyFrom(applied); rc != kSuccess) return rc;
  while (ReadEntry(&mark, &entry)) {
    if (entry.is_note) continue;  // the files it names are in the entry behind it
    std::vector<JournalFileChange> changes;
    if (!ParseEntry(entry.payload, &changes)) return kErrorJournal;
    for (const auto& change : changes) names.insert(change.name);
  }
  for (const std::string& name : names) {
    int rc = kSuccess;
    const auto file = setup_.files.Open(PathOf(name), OpenMode::kReadWrite, &rc);
    if (!file) {
      if (!setup_.files.Exists(PathOf(name))) continue;
      return rc;
    }
    if (rc = file->Flush(); rc != kSuccess) return rc;
  }
  // What a break hides was perhaps never flushed: the journal is kept for whoever mends it.
  if (mark.number < end_.number) return kErrorJournal;
  // The numbers go on, so entries of before can never be taken for new ones.
  end_ = Mark{kHeaderBytes, mark.number};
  if (const int rc = WriteMarks(&end_, end_); rc != kSuccess) return rc;
  if (file_->Size() > 2 * kCheckpointAt) {
    if (const int rc = file_->Truncate(kCheckpointAt); rc != kSuccess) return rc;
    size_ = kCheckpointAt;
  }
  return file_->Flush();
}

}  // namespace tallwick::engine
