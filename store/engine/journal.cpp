#include "store/engine/journal.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "store/engine/byte_order.h"

namespace tallwick::engine {
namespace {

constexpr std::size_t kBootBytes = 56;
// The file grows by this much at a time, in zeros, so that most flushes need not make a new length durable.
constexpr std::int64_t kGrowth = std::int64_t{256} << 10;

}  // namespace

std::string Journal::PathOf(std::string_view name) const {
  return folder_ + "/" + std::string(name);
}

// --- Attaching and leaving ---

int Journal::OpenFile() {
  for (int tries = 0; !file_ && tries < kOpenTries; ++tries) {
    if (const int rc = OpenOnce(); rc != kSuccess) return rc;
    // It may have been set aside since it was opened.
    if (!file_->IsStill(PathOf(kFileName))) file_.reset();
  }
  return file_ ? static_cast<int>(kSuccess) : static_cast<int>(kErrorJournal);
}

int Journal::OpenOnce() {
  int rc = kSuccess;
  read_only_ = false;
  auto file = OpenOrRead(setup_.files, PathOf(kFileName), OpenMode::kOpenOrCreate, &read_only_, &rc);
  if (!file) return rc == kErrorDiskFull || rc == kErrorReadOnly ? rc : static_cast<int>(kErrorJournal);
  // A journal without its name in the folder would be no help after a power cut, and who made an empty one
  // may have died, or failed, before he could make sure of that.
  if (!read_only_ && file->Size() == 0) rc = setup_.files.FlushFolder(folder_);
  if (rc != kSuccess) return rc;
  file_ = std::move(file);
  if (read_only_) {
    // Without a presence: the first who can write must find himself alone, and put right what a power cut
    // left.
    Mark first;
    Mark applied;
    if (!ReadMarks(&first, &applied) && !IsBlank()) rc = kErrorJournal;
    if (rc != kSuccess) file_.reset();
    return rc;
  }
  rc = ComeIn();
  if (rc != kSuccess) file_.reset();
  return rc;
}

// Whoever is alone finishes and empties what a crash or a power cut left, before anyone else may come in. And
// nobody may take another, who is still at that and may die of it, for one who has the company at rest: so
// only one at a time is between the doors, and whoever finds others inside knows that they came in well.
int Journal::ComeIn() {
  if (const int rc = WaitForLock(*file_, kDoorAt, kWriterWaitMs, kDoorTries); rc != kSuccess) return rc;
  int rc = file_->Lock(kPresenceAt, 1, LockKind::kExclusive);
  if (rc == kSuccess) {
    rc = FinishAsOnly(MayHaveLostPower());
  } else if (rc == kLocked) {
    rc = kSuccess;
  }
  if (rc == kSuccess) rc = file_->Lock(kPresenceAt, 1, LockKind::kShared);
  file_->Unlock(kDoorAt, 1);
  return rc;
}

std::string Journal::ReadBoot() {
  std::array<char, kBootBytes> written{};
  if (file_->ReadAt(kBootAt, written.data(), written.size()) != std::ssize(written)) return {};
  return {written.data(), strnlen(written.data(), written.size())};
}

bool Journal::MayHaveLostPower() {
  const std::string boot = setup_.workstation.BootId();
  return boot.empty() || ReadBoot() != boot || setup_.files.IsRemote(folder_);
}

int Journal::WriteBoot(std::string_view boot) {
  std::array<char, kBootBytes> bytes{};
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
    // A broken chain is not done again: what stands before the break is older than what is lost behind it.
    if (all && !IsWhole(first, applied)) rc = kErrorJournal;
    if (rc == kSuccess) rc = Finish(first, applied, all);
    // An entry that was torn by a power cut is the last one. One that others follow has been damaged, and the
    // units of those behind it must not go with it.
    if (rc == kSuccess && HasUnitBehind(end_)) rc = kErrorJournal;
    if (rc == kSuccess) rc = Checkpoint();
    if (rc == kErrorReadOnly) {
      // A table that may only be read here: its entries wait for somebody who may flush it.
      file_->Unlock(kWriterAt, 1);
      return kSuccess;
    }
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
  if (read_only_ || WaitForLock(*file_, kDoorAt) != kSuccess) return;
  if (file_->Lock(kPresenceAt, 1, LockKind::kExclusive) == kSuccess) FinishAsOnly(false);
}

// --- Writing ---

int Journal::WaitForLock(File& file, std::int64_t at, int wait_ms, int max_tries) {
  for (int tries = 0;; ++tries) {
    const int rc = file.Lock(at, 1, LockKind::kExclusive);
    if (rc != kLocked || tries == max_tries) return rc;
    if (tries >= kEagerTries) setup_.clock.Sleep(wait_ms);
  }
}

// One waits for the writer, the others for that one's place. So who has just let go and comes again has to
// wait as well, and cannot write for seconds while those who sleep never find the lock free.
int Journal::TakeWriterLock(bool wait) {
  if (!wait) return file_->Lock(kWriterAt, 1, read_only_ ? LockKind::kShared : LockKind::kExclusive);
  int rc = WaitForLock(*file_, kNextWriterAt);
  if (rc != kSuccess) return rc;
  rc = WaitForLock(*file_, kWriterAt, 1);
  file_->Unlock(kNextWriterAt, 1);
  return rc;
}

int Journal::BeginWriting() {
  if (writing_) return kSuccess;
  if (const int rc = OpenFile(); rc != kSuccess) return rc;
  if (read_only_) return kErrorReadOnly;
  // Who took it away has made a second one possible, and writers who know nothing of each other.
  if (!file_->IsStill(PathOf(kFileName))) return kErrorJournal;
  if (const int rc = TakeWriterLock(true); rc != kSuccess) return rc;
  Mark first{kHeaderBytes, 1};
  Mark applied = first;
  size_ = file_->Size();
  int rc = size_ < 0 ? static_cast<int>(kErrorJournal) : static_cast<int>(kSuccess);
  if (rc == kSuccess && !ReadMarks(&first, &applied)) {
    rc = IsBlank() ? WriteMarks(&first, applied) : static_cast<int>(kErrorJournal);
    if (rc == kSuccess) rc = WriteBoot(setup_.workstation.BootId());
    if (rc == kSuccess && size_ <= kHeaderBytes) empty_at_ = first.number;  // nothing older can come back
    size_ = std::max(size_, kHeaderBytes);
  } else if (const std::string boot = ReadBoot();
             rc == kSuccess && boot != kFlushFailed && boot != setup_.workstation.BootId()) {
    rc = WriteBoot(kSeveralMachines);
  }
  if (rc == kSuccess) rc = Finish(first, applied, false);
  unapplied_ = false;
  writing_ = rc == kSuccess;
  if (!writing_) file_->Unlock(kWriterAt, 1);
  return rc;
}

void Journal::EndWriting() {
  if (!writing_) return;
  Abandon();
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
  // An empty one may have been left by somebody who died before that was durable.
  const int rc = end_.position > kHeaderBytes ? Checkpoint() : FlushEmpty();
  if (rc != kSuccess && !was_writing) EndWriting();
  return rc;
}

int Journal::Commit(const std::vector<JournalFileChange>& changes) {
  std::vector<JournalFileChange> rest;
  const std::vector<JournalFileChange> tails = SplitTails(changes, &rest);
  const bool ahead = IsWorthAhead(tails);
  int rc = ahead ? WriteTails(tails) : static_cast<int>(kSuccess);
  if (rc == kSuccess && ahead) rc = FlushTails();
  const std::vector<JournalFileChange>& entry_changes = ahead ? rest : changes;
  for (const auto& change : entry_changes) {
    for (const auto& extent : change.extents)
      if (rc == kSuccess) rc = change.open->Reserve(extent.offset, std::ssize(extent.bytes));
  }
  if (rc == kSuccess) rc = FlushNames(changes);
  std::vector<std::uint8_t> entry;
  if (rc == kSuccess) entry = BuildEntry(end_.number, entry_changes);
  if (std::ssize(entry) > kMaxPayload) rc = kErrorTooLarge;
  const std::uint64_t unit = UnitNumber();
  if (rc == kSuccess) rc = Append(entry);
  if (rc != kSuccess) {
    Abandon();
    return rc;
  }
  // From here on the unit stands: whoever comes to an entry that was not applied applies it.
  ForgetAhead();
  unapplied_ = WriteBegun(unit) != kSuccess || Apply(entry_changes) != kSuccess ||
               WriteMarks(nullptr, end_) != kSuccess;
  return kSuccess;
}

int Journal::FlushNames(const std::vector<JournalFileChange>& changes) {
  const bool known = std::all_of(changes.begin(), changes.end(),
                                 [this](const auto& change) { return named_.contains(change.name); });
  if (known) return kSuccess;
  if (const int rc = setup_.files.FlushFolder(folder_); rc != kSuccess) return rc;
  for (const auto& change : changes) named_.insert(change.name);
  return kSuccess;
}

int Journal::FlushEmpty() {
  if (empty_at_ == end_.number) return kSuccess;
  int rc = WriteMarks(&end_, end_);
  if (rc == kSuccess) rc = file_->Flush();
  if (rc == kSuccess) empty_at_ = end_.number;
  return rc;
}

int Journal::Append(const std::vector<std::uint8_t>& entry) {
  const Mark next{end_.position + std::ssize(entry), end_.number + 1};
  // The entries of before must be gone for good when the first of them is written over.
  int rc = end_.position == kHeaderBytes ? FlushEmpty() : static_cast<int>(kSuccess);
  if (rc == kSuccess) rc = GrowTo(next.position);
  if (rc == kSuccess) rc = file_->WriteAt(end_.position, entry.data(), entry.size());
  if (rc == kSuccess) rc = file_->Flush();
  if (rc == kSuccess) {
    end_ = next;
    return kSuccess;
  }
  // Nobody may find the entry: a reader of the journal stops at the first one that is not whole.
  const std::array<std::uint8_t, kEntryHead> none{};
  in_doubt_ =
      file_->WriteAt(end_.position, none.data(), none.size()) != kSuccess || file_->Flush() != kSuccess;
  return rc;
}

int Journal::GrowTo(std::int64_t size) {
  // What is longer than that makes its own length durable anyway.
  if (size - size_ > kGrowth) {
    size_ = size;
    return kSuccess;
  }
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

int Journal::WriteBegun(std::uint64_t unit) {
  std::array<std::uint8_t, 8> bytes{};
  Store64(bytes.data(), unit);
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

}  // namespace tallwick::engine
