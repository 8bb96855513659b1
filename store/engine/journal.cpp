#include "store/engine/journal.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <set>

#include "store/engine/byte_order.h"
#include "store/engine/index_file.h"

namespace tallwick::engine {
namespace {

constexpr std::string_view kMagic = "TWKJRNL1";
constexpr std::string_view kEntryMagic = "TWKE";
constexpr std::int64_t kHeaderBytes = 96;
constexpr std::int64_t kBootAt = 32;
constexpr std::size_t kBootBytes = 56;
constexpr std::int64_t kBegunAt = 88;
constexpr std::string_view kSeveralMachines = "-";
constexpr std::int64_t kEntryHead = 28;
// The file grows by this much at a time, in zeros, so that most flushes need not make a new length durable.
constexpr std::int64_t kGrowth = std::int64_t{256} << 10;
constexpr std::int64_t kCheckpointAt = std::int64_t{8} << 20;
constexpr std::int64_t kMaxPayload = std::int64_t{1} << 32;
// Posts last milliseconds; a writer or reader that waits longer than this gives up.
constexpr int kWriterTries = 2000;
constexpr int kWriterWaitMs = 2;
// Most units are brought to the tables within microseconds, so a reader looks this often before it sleeps.
constexpr int kEagerTries = 50;

std::uint64_t Checksum(std::uint64_t number, std::span<const std::uint8_t> bytes) {
  std::uint64_t sum = 0xCBF29CE484222325U ^ number;
  std::size_t i = 0;
  for (; i + 8 <= bytes.size(); i += 8) sum = (sum ^ Load64(&bytes[i])) * 0x100000001B3U;
  for (; i < bytes.size(); ++i) sum = (sum ^ bytes[i]) * 0x100000001B3U;
  return sum ^ (sum >> 29);
}

void Put(std::vector<std::uint8_t>* out, const void* bytes, std::size_t length) {
  const auto* from = static_cast<const std::uint8_t*>(bytes);
  out->insert(out->end(), from, from + length);
}

void Put16(std::vector<std::uint8_t>* out, std::uint32_t v) {
  std::uint8_t b[2];
  Store16(b, v);
  Put(out, b, sizeof b);
}
void Put32(std::vector<std::uint8_t>* out, std::uint32_t v) {
  std::uint8_t b[4];
  Store32(b, v);
  Put(out, b, sizeof b);
}
void Put64(std::vector<std::uint8_t>* out, std::uint64_t v) {
  std::uint8_t b[8];
  Store64(b, v);
  Put(out, b, sizeof b);
}

std::vector<std::uint8_t> BuildEntry(std::uint64_t number, const std::vector<JournalFileChange>& changes) {
  std::size_t total = static_cast<std::size_t>(kEntryHead) + 2;
  for (const auto& change : changes) {
    total += 6 + change.name.size();
    for (const auto& extent : change.extents) total += 12 + extent.bytes.size();
  }
  std::vector<std::uint8_t> entry;
  entry.reserve(total);
  entry.resize(kEntryHead);
  Put16(&entry, static_cast<std::uint32_t>(changes.size()));
  for (const auto& change : changes) {
    Put16(&entry, static_cast<std::uint32_t>(change.name.size()));
    Put(&entry, change.name.data(), change.name.size());
    Put32(&entry, static_cast<std::uint32_t>(change.extents.size()));
    for (const auto& extent : change.extents) {
      Put64(&entry, static_cast<std::uint64_t>(extent.offset));
      Put32(&entry, static_cast<std::uint32_t>(extent.bytes.size()));
      Put(&entry, extent.bytes.data(), extent.bytes.size());
    }
  }
  const std::span<const std::uint8_t> payload(entry.data() + kEntryHead, entry.size() - kEntryHead);
  std::memcpy(entry.data(), kEntryMagic.data(), kEntryMagic.size());
  Store64(&entry[4], payload.size());
  Store64(&entry[12], number);
  Store64(&entry[20], Checksum(number, payload));
  return entry;
}

// Reads a payload front to back; every read is checked against its end.
class PayloadReader {
 public:
  explicit PayloadReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
  bool Take(std::size_t length, std::span<const std::uint8_t>* out) {
    if (bytes_.size() < length) return false;
    *out = bytes_.first(length);
    bytes_ = bytes_.subspan(length);
    return true;
  }
  bool Take16(std::uint32_t* v) {
    std::span<const std::uint8_t> b;
    if (!Take(2, &b)) return false;
    *v = Load16(b.data());
    return true;
  }
  bool Take32(std::uint32_t* v) {
    std::span<const std::uint8_t> b;
    if (!Take(4, &b)) return false;
    *v = Load32(b.data());
    return true;
  }
  bool Take64(std::uint64_t* v) {
    std::span<const std::uint8_t> b;
    if (!Take(8, &b)) return false;
    *v = Load64(b.data());
    return true;
  }

 private:
  std::span<const std::uint8_t> bytes_;
};

// A name that stays in the folder.
bool IsPlainName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." &&
         name.find_first_of("/\\:") == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

bool ParsePayload(std::span<const std::uint8_t> payload, std::vector<JournalFileChange>* changes) {
  PayloadReader reader(payload);
  std::uint32_t files = 0;
  if (!reader.Take16(&files)) return false;
  for (std::uint32_t f = 0; f < files; ++f) {
    JournalFileChange change;
    std::uint32_t length = 0;
    std::uint32_t extents = 0;
    std::span<const std::uint8_t> name;
    if (!reader.Take16(&length) || !reader.Take(length, &name) || !reader.Take32(&extents)) return false;
    change.name.assign(name.begin(), name.end());
    if (!IsPlainName(change.name)) return false;
    for (std::uint32_t e = 0; e < extents; ++e) {
      JournalExtent extent;
      std::uint64_t offset = 0;
      std::uint32_t size = 0;
      if (!reader.Take64(&offset) || !reader.Take32(&size) || !reader.Take(size, &extent.bytes)) return false;
      if (offset > (std::uint64_t{1} << 40)) return false;
      extent.offset = static_cast<std::int64_t>(offset);
      change.extents.push_back(extent);
    }
    changes->push_back(std::move(change));
  }
  return true;
}

bool IsIndexName(std::string_view name) {
  return name.size() > 4 &&
         (name.substr(name.size() - 4) == ".cdx" || name.substr(name.size() - 4) == ".CDX");
}

}  // namespace

std::string Journal::PathOf(std::string_view name) const {
  return folder_ + "/" + std::string(name);
}

// --- Attaching and leaving ---

int Journal::OpenFile() {
  if (file_) return kSuccess;
  int rc = kSuccess;
  const bool fresh = !setup_.files.Exists(PathOf(kFileName));
  auto file = setup_.files.Open(PathOf(kFileName), OpenMode::kOpenOrCreate, &rc);
  if (!file) return rc == kErrorDiskFull ? rc : static_cast<int>(kErrorJournal);
  // A journal without its name in the folder would be no help after a power cut.
  if (fresh) rc = setup_.files.FlushFolder(folder_);
  if (rc != kSuccess) return rc;
  file_ = std::move(file);
  // Whoever is alone finishes and empties what a crash or a power cut left, before anyone else may come in.
  rc = file_->Lock(kPresenceAt, 1, LockKind::kExclusive);
  if (rc == kSuccess) rc = FinishAsOnly(MayHaveLostPower());
  if (rc == kLocked) rc = kSuccess;
  for (int tries = 0; rc == kSuccess; ++tries) {
    rc = file_->Lock(kPresenceAt, 1, LockKind::kShared);
    if (rc != kLocked || tries == kWriterTries) break;
    setup_.clock.Sleep(kWriterWaitMs);
    rc = kSuccess;
  }
  if (rc != kSuccess) file_.reset();
  return rc;
}

bool Journal::MayHaveLostPower() {
  std::array<char, kBootBytes> written{};
  const std::string boot = setup_.workstation.BootId();
  const auto got = file_->ReadAt(kBootAt, written.data(), written.size());
  const std::string_view id(written.data(), strnlen(written.data(), written.size()));
  return boot.empty() || got != static_cast<std::int64_t>(written.size()) || id != boot;
}

int Journal::WriteBoot() {
  std::array<char, kBootBytes> bytes{};
  const std::string boot = setup_.workstation.BootId();
  std::memcpy(bytes.data(), boot.data(), std::min(boot.size(), bytes.size()));
  return file_->WriteAt(kBootAt, bytes.data(), bytes.size());
}

int Journal::FinishAsOnly(bool all) {
  const std::int64_t size = file_->Size();
  if (size < 0) return kErrorJournal;
  if (size == 0) return kSuccess;
  if (const int rc = TakeWriterLock(true); rc != kSuccess) return rc;
  Mark first;
  Mark applied;
  int rc = kSuccess;
  // Only when the power may have gone are applied entries applied again, oldest first: what other programs
  // wrote to the tables since is newer. A file without a header was made by someone who died before the first
  // entry.
  if (ReadMarks(&first, &applied)) {
    rc = ApplyFrom(all ? first : applied);
    // A broken chain cannot be done again: what it has lost must not be forgotten.
    if (rc == kSuccess && end_.number < applied.number) rc = kErrorJournal;
    if (rc == kSuccess) rc = Checkpoint();
  } else if (!IsBlank()) {
    rc = kErrorJournal;
  }
  if (rc == kSuccess) rc = file_->Truncate(0);
  file_->Unlock(kWriterAt, 1);
  return rc;
}

int Journal::Attach() {
  if (file_) return kSuccess;
  return setup_.files.Exists(PathOf(kFileName)) ? OpenFile() : static_cast<int>(kSuccess);
}

Journal::~Journal() {
  if (!file_) return;
  if (writing_) EndWriting();
  // The last one to leave makes the tables durable and empties the journal. What fails is done by the next to
  // come.
  if (file_->Lock(kPresenceAt, 1, LockKind::kExclusive) == kSuccess) FinishAsOnly(false);
}

// --- Writing ---

int Journal::TakeWriterLock(bool wait) {
  for (int tries = 0;; ++tries) {
    const int rc = file_->Lock(kWriterAt, 1, LockKind::kExclusive);
    if (rc != kLocked || !wait || tries == kWriterTries) return rc;
    setup_.clock.Sleep(kWriterWaitMs);
  }
}

int Journal::BeginWriting() {
  if (writing_) return kSuccess;
  if (const int rc = OpenFile(); rc != kSuccess) return rc;
  if (const int rc = TakeWriterLock(true); rc != kSuccess) return rc;
  Mark first{kHeaderBytes, 1};
  Mark applied = first;
  size_ = file_->Size();
  int rc = size_ < 0 ? static_cast<int>(kErrorJournal) : static_cast<int>(kSuccess);
  if (rc == kSuccess && !ReadMarks(&first, &applied)) {
    rc = IsBlank() ? WriteMarks(&first, applied) : static_cast<int>(kErrorJournal);
    if (rc == kSuccess) rc = WriteBoot();
    size_ = std::max(size_, kHeaderBytes);
  } else if (rc == kSuccess && MayHaveLostPower()) {
    rc = file_->WriteAt(kBootAt, kSeveralMachines.data(), kSeveralMachines.size() + 1);
  }
  if (rc == kSuccess) rc = ApplyFrom(applied);
  unapplied_ = false;
  writing_ = rc == kSuccess;
  if (!writing_) file_->Unlock(kWriterAt, 1);
  return rc;
}

void Journal::EndWriting() {
  if (!writing_) return;
  if (unapplied_ || end_.position > kCheckpointAt) {
    // What fails here is tried again by whoever next reads or writes.
    unapplied_ = Checkpoint() != kSuccess && unapplied_;
  }
  writing_ = false;
  file_->Unlock(kWriterAt, 1);
}

int Journal::Settle() {
  if (!file_ && !setup_.files.Exists(PathOf(kFileName))) return kSuccess;
  const bool was_writing = writing_;
  if (const int rc = BeginWriting(); rc != kSuccess) return rc;
  const int rc = end_.position > kHeaderBytes ? Checkpoint() : static_cast<int>(kSuccess);
  if (rc != kSuccess && !was_writing) EndWriting();
  return rc;
}

int Journal::Commit(const std::vector<JournalFileChange>& changes) {
  for (const auto& change : changes) {
    for (const auto& extent : change.extents) {
      const int rc = change.open->Reserve(extent.offset, static_cast<std::int64_t>(extent.bytes.size()));
      if (rc != kSuccess) return rc;
    }
  }
  const std::vector<std::uint8_t> entry = BuildEntry(end_.number, changes);
  if (static_cast<std::int64_t>(entry.size()) > kMaxPayload) return kErrorTooLarge;
  const Mark next{end_.position + static_cast<std::int64_t>(entry.size()), end_.number + 1};
  int rc = GrowTo(next.position);
  if (rc == kSuccess) rc = file_->WriteAt(end_.position, entry.data(), entry.size());
  if (rc == kSuccess) rc = file_->Flush();
  if (rc != kSuccess) {
    // Nobody may find the entry: a reader of the journal stops at the first one that is not whole.
    const std::array<std::uint8_t, kEntryHead> none{};
    if (file_->WriteAt(end_.position, none.data(), none.size()) == kSuccess) file_->Flush();
    return rc;
  }
  // From here on the unit stands: whoever comes to an entry that was not applied applies it.
  end_ = next;
  unapplied_ = WriteBegun(next.number - 1) != kSuccess || Apply(changes) != kSuccess ||
               WriteMarks(nullptr, next) != kSuccess;
  return kSuccess;
}

int Journal::GrowTo(std::int64_t size) {
  if (size_ >= size) return kSuccess;
  const std::vector<std::uint8_t> zeros(kGrowth, 0);
  while (size_ < size) {
    const int rc = file_->WriteAt(size_, zeros.data(), zeros.size());
    if (rc != kSuccess) {
      file_->Truncate(size_);
      return rc;
    }
    size_ += kGrowth;
  }
  return kSuccess;
}

int Journal::Apply(const std::vector<JournalFileChange>& changes) {
  for (const auto& change : changes) {
    for (const auto& extent : change.extents) {
      const int rc = change.open->WriteAt(extent.offset, extent.bytes.data(), extent.bytes.size());
      if (rc != kSuccess) return rc;
    }
  }
  return kSuccess;
}

int Journal::WriteBegun(std::uint64_t number) {
  std::array<std::uint8_t, 8> bytes{};
  Store64(bytes.data(), number);
  return file_->WriteAt(kBegunAt, bytes.data(), bytes.size());
}

int Journal::WriteMarks(const Mark* first, const Mark& applied) {
  std::array<std::uint8_t, kHeaderBytes> header{};
  std::memcpy(header.data(), kMagic.data(), kMagic.size());
  Store64(&header[8], static_cast<std::uint64_t>(applied.position));
  Store64(&header[16], applied.number);
  if (first == nullptr) return file_->WriteAt(8, &header[8], 16);
  Store64(&header[24], first->number);
  return file_->WriteAt(0, header.data(), kBootAt);
}

// --- Recovery ---

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

bool Journal::ReadEntry(Mark* mark, std::vector<std::uint8_t>* payload) {
  std::array<std::uint8_t, kEntryHead> head{};
  if (file_->ReadAt(mark->position, head.data(), head.size()) != kEntryHead) return false;
  if (std::memcmp(head.data(), kEntryMagic.data(), kEntryMagic.size()) != 0) return false;
  const std::uint64_t length = Load64(&head[4]);
  if (Load64(&head[12]) != mark->number || length > static_cast<std::uint64_t>(kMaxPayload)) return false;
  const std::int64_t start = mark->position + kEntryHead;
  if (start + static_cast<std::int64_t>(length) > file_->Size()) return false;
  payload->resize(length);
  if (file_->ReadAt(start, payload->data(), length) != static_cast<std::int64_t>(length)) return false;
  if (Checksum(mark->number, *payload) != Load64(&head[20])) return false;
  *mark = Mark{start + static_cast<std::int64_t>(length), mark->number + 1};
  return true;
}

bool Journal::HasEntryAt(const Mark& mark) {
  std::array<std::uint8_t, kEntryHead> head{};
  if (file_->ReadAt(mark.position, head.data(), head.size()) != kEntryHead) return false;
  return std::memcmp(head.data(), kEntryMagic.data(), kEntryMagic.size()) == 0 &&
         Load64(&head[12]) == mark.number;
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
  std::vector<std::uint8_t> payload;
  return ReadMarks(&first, &applied) && ReadEntry(&applied, &payload);
}

int Journal::Recover() {
  if (writing_) return kSuccess;
  if (const int rc = Attach(); rc != kSuccess || !file_) return rc;
  Mark first;
  Mark applied;
  if (!ReadMarks(&first, &applied) || !HasEntryAt(applied)) return kSuccess;
  int rc = TakeWriterLock(false);
  if (rc == kLocked) return kSuccess;  // a live writer is at work and will finish
  if (rc != kSuccess) return rc;
  if (ReadMarks(&first, &applied)) rc = ApplyFrom(applied);
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
  std::vector<std::uint8_t> payload;
  for (std::uint64_t number = mark.number; ReadEntry(&mark, &payload); number = mark.number) {
    int rc = ApplyEntry(payload, number);
    if (rc == kSuccess) rc = WriteMarks(nullptr, mark);
    if (rc != kSuccess) return rc;
  }
  end_ = mark;
  return kSuccess;
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

int Journal::ApplyEntry(std::span<const std::uint8_t> payload, std::uint64_t number) {
  std::vector<JournalFileChange> changes;
  if (!ParsePayload(payload, &changes)) return kErrorJournal;
  std::vector<std::unique_ptr<File>> files(changes.size());
  int rc = kSuccess;
  for (std::size_t i = 0; i < changes.size() && rc == kSuccess; ++i)
    rc = OpenToApply(changes[i].name, &files[i]);
  // Only with every index lock in hand: a reader that holds one waits for a unit that has begun.
  if (rc == kSuccess) rc = WriteBegun(number);
  for (std::size_t i = 0; i < changes.size(); ++i) {
    if (!files[i]) continue;
    for (const auto& extent : changes[i].extents)
      if (rc == kSuccess) rc = files[i]->WriteAt(extent.offset, extent.bytes.data(), extent.bytes.size());
  }
  return rc;
}

int Journal::Checkpoint() {
  std::set<std::string> names;
  std::vector<std::uint8_t> payload;
  Mark mark;
  Mark applied;
  if (!ReadMarks(&mark, &applied)) return kErrorJournal;
  if (const int rc = ApplyFrom(applied); rc != kSuccess) return rc;
  while (ReadEntry(&mark, &payload)) {
    std::vector<JournalFileChange> changes;
    if (!ParsePayload(payload, &changes)) return kErrorJournal;
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
