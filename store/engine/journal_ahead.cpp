// What a large unit writes to its files before it stands: the bytes behind the files' ends, under a note of
// their lengths.
#include <algorithm>
#include <array>

#include "core/text.h"
#include "store/engine/byte_order.h"
#include "store/engine/index_file.h"
#include "store/engine/journal.h"

namespace tallwick::engine {
namespace {

// From so many bytes behind the files' ends on, writing them once is worth the note's flush.
constexpr std::int64_t kAheadBytes = std::int64_t{1} << 20;

// Places in a table's head: date of change, record count, and the lengths of head and record.
constexpr std::size_t kDateAt = 1;
constexpr std::size_t kCountAt = 4;
constexpr std::size_t kHeadLengthAt = 8;
constexpr std::size_t kRecordLengthAt = 10;

// How long the file is without what was written ahead; -1 when it has become another one since and nothing
// may be cut. A table's date of change is no sign of that, and records that another program has appended over
// the tail stay: the table's head counts them, and never those written ahead.
std::int64_t LengthWithoutTail(const JournalLength& before, std::array<std::uint8_t, 16> start) {
  std::int64_t appended = 0;
  if (IsTableName(before.name)) {
    appended = std::int64_t{Load32(&start[kCountAt])} - Load32(&before.start[kCountAt]);
    std::copy_n(&before.start[kDateAt], kHeadLengthAt - kDateAt, &start[kDateAt]);
  }
  if (start != before.start || appended < 0) return -1;
  return before.length + appended * Load16(&before.start[kRecordLengthAt]);
}

int CutFile(File& file, const JournalLength& before) {
  auto start = before.start;
  if (file.ReadAt(0, start.data(), start.size()) < 0) return kErrorRead;
  const std::int64_t length = LengthWithoutTail(before, start);
  if (length < 0 || file.Size() <= length) return kSuccess;
  const int rc = file.Truncate(length);
  return rc == kSuccess ? file.Flush() : rc;
}

std::int64_t TotalBytes(const std::vector<JournalFileChange>& changes) {
  std::int64_t total = 0;
  for (const auto& change : changes) {
    for (const JournalExtent& extent : change.extents) total += std::ssize(extent.bytes);
  }
  return total;
}

}  // namespace

std::optional<std::int64_t> Journal::AheadOf(std::string_view name) const {
  for (const JournalLength& file : lengths_) {
    if (file.name == name) return file.length;
  }
  return std::nullopt;
}

std::vector<JournalFileChange> Journal::SplitTails(const std::vector<JournalFileChange>& changes,
                                                   std::vector<JournalFileChange>* rest) const {
  std::vector<JournalFileChange> tails;
  for (const auto& change : changes) {
    const std::int64_t size = AheadOf(change.name).value_or(change.open->Size());
    if (size < 0) {
      rest->push_back(change);
      continue;
    }
    JournalFileChange tail{change.name, change.open, {}};
    JournalFileChange head{change.name, change.open, {}};
    for (const JournalExtent& extent : change.extents) {
      const auto inside = static_cast<std::size_t>(
          std::clamp<std::int64_t>(size - extent.offset, 0, std::ssize(extent.bytes)));
      if (inside > 0) head.extents.push_back({extent.offset, extent.bytes.first(inside)});
      if (inside == extent.bytes.size()) continue;
      tail.extents.push_back(
          {extent.offset + static_cast<std::int64_t>(inside), extent.bytes.subspan(inside)});
    }
    if (!head.extents.empty()) rest->push_back(std::move(head));
    if (!tail.extents.empty()) tails.push_back(std::move(tail));
  }
  return tails;
}

bool Journal::IsWorthAhead(const std::vector<JournalFileChange>& tails) const {
  return !notes_.empty() || TotalBytes(tails) >= kAheadBytes;
}

int Journal::WriteAhead(const std::vector<JournalFileChange>& changes) {
  std::vector<JournalFileChange> rest;
  const std::vector<JournalFileChange> tails = SplitTails(changes, &rest);
  return IsWorthAhead(tails) ? WriteTails(tails) : static_cast<int>(kSuccess);
}

int Journal::NoteLengths(const std::vector<JournalFileChange>& tails) {
  std::vector<JournalLength> lengths = lengths_;
  for (const auto& tail : tails) {
    if (AheadOf(tail.name)) continue;
    JournalLength file{tail.name, tail.open->Size(), {}};
    if (file.length < 0 || tail.open->ReadAt(0, file.start.data(), file.start.size()) < 0) return kErrorRead;
    lengths.push_back(std::move(file));
  }
  if (lengths.size() == lengths_.size()) return kSuccess;
  const Mark at = end_;
  if (const int rc = Append(BuildNote(end_.number, lengths)); rc != kSuccess) return rc;
  notes_.push_back(at);
  lengths_ = std::move(lengths);
  return kSuccess;
}

int Journal::WriteTails(const std::vector<JournalFileChange>& tails) {
  if (const int rc = NoteLengths(tails); rc != kSuccess) return rc;
  if (const int rc = Apply(tails); rc != kSuccess) return rc;
  for (const auto& tail : tails) {
    const std::int64_t from = tail.extents.front().offset;
    const JournalExtent& last = tail.extents.back();
    tail.open->StartFlush(from, last.offset + std::ssize(last.bytes) - from);
    if (std::find(ahead_.begin(), ahead_.end(), tail.open) == ahead_.end()) ahead_.push_back(tail.open);
  }
  return kSuccess;
}

int Journal::FlushTails() {
  for (File* file : ahead_) {
    if (const int rc = file->Flush(); rc != kSuccess) return rc;
  }
  return kSuccess;
}

void Journal::ForgetAhead() {
  notes_.clear();
  lengths_.clear();
  ahead_.clear();
}

void Journal::Abandon() {
  // What cannot be cut back now is cut back by whoever writes next, before anything else.
  // An entry that may come back with the power needs what stands behind the ends.
  if (!notes_.empty() && !in_doubt_) CutBack(notes_, lengths_, true);
  in_doubt_ = false;
  ForgetAhead();
}

int Journal::CutBack(const std::vector<Mark>& notes, const std::vector<JournalLength>& lengths, bool locked) {
  for (const JournalLength& before : lengths) {
    int rc = kSuccess;
    const auto file = setup_.files.Open(PathOf(before.name), OpenMode::kReadWrite, &rc);
    if (!file && !setup_.files.Exists(PathOf(before.name))) continue;
    if (file && !locked && IsTableName(before.name)) rc = LockAppends(*file);
    // Another program may have lengthened the index and not told its head yet.
    if (file && !locked && IsIndexName(before.name)) rc = WaitForLock(*file, kIndexLockAt);
    if (file && rc == kSuccess) rc = CutFile(*file, before);
    if (rc != kSuccess) return rc;
  }
  // The last first: a note that stands must never be one that only later numbers would lead to.
  const std::array<std::uint8_t, kEntryHead> none{};
  for (std::size_t left = notes.size(); left > 0; --left) {
    const Mark& note = notes[left - 1];
    if (const int rc = file_->WriteAt(note.position, none.data(), none.size()); rc != kSuccess) return rc;
  }
  end_ = notes.front();
  return kSuccess;
}

}  // namespace tallwick::engine
