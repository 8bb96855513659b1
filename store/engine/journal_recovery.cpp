// The journal as it is read: what a reader must know of units under way, and what is done with the entries
// that a writer left behind.
#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "store/engine/byte_order.h"
#include "store/engine/file_swap.h"
#include "store/engine/index_file.h"
#include "store/engine/journal.h"

namespace tallwick::engine {
namespace {

int WriteExtents(File& file, const std::vector<JournalExtent>& extents) {
  for (const JournalExtent& extent : extents) {
    const int rc = file.WriteAt(extent.offset, extent.bytes.data(), extent.bytes.size());
    if (rc != kSuccess) return rc;
  }
  return kSuccess;
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
  if (got < kBootAt) return got >= 0;
  // The head is written before the first entry, whose magic stands in the same sector: where only the head is
  // missing it has been lost.
  return std::all_of(head.begin(), head.end(), [](auto b) { return b == 0; }) && !HasUnitBehind({});
}

bool Journal::HasUnitBehind(const Mark& end) {
  constexpr std::int64_t kPiece = std::int64_t{1} << 20;
  const std::int64_t size = file_->Size();
  std::vector<std::uint8_t> bytes;
  for (std::int64_t from = end.position; from < size; from += kPiece) {
    bytes.resize(static_cast<std::size_t>(std::min(kPiece + kEntryHead - 1, size - from)));
    if (file_->ReadAt(from, bytes.data(), bytes.size()) != std::ssize(bytes)) return true;
    for (const std::size_t at : EntryHeadsIn(bytes)) {
      const std::int64_t position = from + static_cast<std::int64_t>(at);
      JournalHead head;
      if (!head.Parse(std::span(bytes).subspan(at).first<kEntryHead>()) || head.number <= end.number)
        continue;
      Mark mark{position, head.number};
      if (HasUnitAt(mark)) return true;
    }
  }
  return false;
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
  bool flushed = false;
  end_ = mark;
  for (Mark at = mark; ReadEntry(&mark, &entry); at = mark) {
    if (entry.is_note) {
      lengths.clear();
      if (!ParseNote(entry.payload, &lengths)) return kErrorJournal;
      notes.push_back(at);
      continue;
    }
    // Its writer may have died before it was durable: nobody may see what a power cut would take away.
    int rc = std::exchange(flushed, true) ? static_cast<int>(kSuccess) : file_->Flush();
    if (rc == kSuccess) rc = ApplyEntry(entry.payload, notes.empty() ? at.number : notes.front().number);
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
  if (under_way && !HasUnitAt(applied) && !CompleteMark(first, &applied)) {
    if (!FlushHasFailed()) return kErrorJournal;
    end_ = applied;  // somebody died in the middle of writing all entries again
    return WriteAgain(first);
  }
  const int rc = ApplyFrom(all ? first : applied);
  return rc == kSuccess && under_way ? WriteMarks(nullptr, end_) : rc;
}

int Journal::OpenToApply(const std::string& name, std::unique_ptr<File>* file) {
  int rc = kSuccess;
  *file = setup_.files.Open(PathOf(name), OpenMode::kReadWrite, &rc);
  if (!*file && setup_.files.Exists(PathOf(name))) return rc;
  if (!*file) return IsIndexName(name) || gives_up_ ? kSuccess : kErrorJournal;
  if (IsIndexName(name)) return WaitForLock(**file, kIndexLockAt);
  return IsTableName(name) ? LockAppends(**file) : static_cast<int>(kSuccess);
}

int Journal::LockAppends(File& table) {
  const int rc = WaitForLock(table, kIndexedAppendAt);
  return rc == kSuccess ? WaitForLock(table, kPlainAppendAt) : rc;
}

int Journal::ApplyEntry(std::span<const std::uint8_t> payload, std::uint64_t unit) {
  std::vector<JournalFileChange> changes;
  if (!ParseEntry(payload, &changes)) return kErrorJournal;
  std::vector<std::unique_ptr<File>> files(changes.size());
  int rc = kSuccess;
  for (std::size_t i = 0; i < changes.size() && rc == kSuccess; ++i) {
    rc = OpenToApply(changes[i].name, &files[i]);
    if (rc != kSuccess || !files[i] || LengthAfter(changes[i], files[i]->Size()) >= 0) continue;
    files[i].reset();
    if (!gives_up_) rc = kErrorJournal;
  }
  // Only with every index lock in hand: a reader that holds one waits for a unit that has begun.
  if (rc == kSuccess) rc = WriteBegun(unit);
  for (std::size_t i = 0; i < changes.size(); ++i) {
    if (rc == kSuccess && files[i]) rc = WriteExtents(*files[i], changes[i].extents);
  }
  return rc;
}

int Journal::WriteAgain(Mark from) {
  std::vector<std::vector<std::uint8_t>> payloads;
  Entry entry;
  while (from.number < end_.number && ReadEntry(&from, &entry)) {
    if (!entry.is_note) payloads.push_back(std::move(entry.payload));
  }
  if (from.number != end_.number) return kErrorJournal;
  std::vector<std::vector<JournalFileChange>> units(payloads.size());
  std::map<std::string, std::unique_ptr<File>> files;
  int rc = kSuccess;
  for (std::size_t i = 0; i < payloads.size() && rc == kSuccess; ++i) {
    if (!ParseEntry(payloads[i], &units[i])) return kErrorJournal;
    for (const auto& change : units[i])
      if (rc == kSuccess && !files[change.name]) rc = OpenToApply(change.name, &files[change.name]);
  }
  // Records and keys go back to what they were for a moment: nobody may read them until all are through.
  if (rc == kSuccess) rc = WriteBegun(end_.number);
  for (const auto& unit : units) {
    for (const auto& change : unit) {
      if (rc == kSuccess && files[change.name]) rc = WriteExtents(*files[change.name], change.extents);
    }
  }
  return rc == kSuccess ? WriteBegun(0) : rc;
}

std::set<std::string> Journal::NamesFrom(Mark* mark) {
  std::set<std::string> names;
  Entry entry;
  while (ReadEntry(mark, &entry)) {
    std::vector<JournalFileChange> changes;
    // The files that a note names are in the entry behind it.
    if (entry.is_note || !ParseEntry(entry.payload, &changes)) continue;
    for (const auto& change : changes) names.insert(change.name);
  }
  return names;
}

int Journal::FlushFiles(const std::set<std::string>& names) {
  for (const std::string& name : names) {
    int rc = kSuccess;
    const auto file = setup_.files.Open(PathOf(name), OpenMode::kReadWrite, &rc);
    if (!file && !setup_.files.Exists(PathOf(name))) continue;
    if (file) rc = file->Flush();
    // The system may say that these bytes are on the disk the next time it is asked, when they are nowhere.
    if (file && rc != kSuccess) WriteBoot(kFlushFailed);
    if (rc != kSuccess) return rc;
  }
  return kSuccess;
}

int Journal::Checkpoint() {
  Mark mark;
  Mark applied;
  if (!ReadMarks(&mark, &applied)) return kErrorJournal;
  if (const int rc = ApplyFrom(applied); rc != kSuccess) return rc;
  const bool again = FlushHasFailed();
  int rc = again ? WriteAgain(mark) : static_cast<int>(kSuccess);
  if (rc == kSuccess) rc = FlushFiles(NamesFrom(&mark));
  if (rc != kSuccess) return rc;
  // What a break hides was perhaps never flushed: the journal is kept for whoever mends it.
  if (mark.number < end_.number) return kErrorJournal;
  if (again) rc = WriteBoot(kSeveralMachines);
  // The numbers go on, so entries of before can never be taken for new ones.
  end_ = Mark{kHeaderBytes, mark.number};
  if (rc == kSuccess) rc = FlushEmpty();
  if (rc == kSuccess && file_->Size() > 2 * kCheckpointAt) {
    rc = file_->Truncate(kCheckpointAt);
    if (rc == kSuccess) size_ = kCheckpointAt;
  }
  return rc;
}

}  // namespace tallwick::engine
