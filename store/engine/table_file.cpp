#include "store/engine/table_file.h"

#include <algorithm>
#include <array>

#include "store/engine/byte_order.h"
#include "store/engine/file_swap.h"

namespace tallwick::engine {
namespace {

constexpr std::int64_t kIndexedBase = kIndexedAppendAt;
constexpr std::int64_t kIndexedWholeLength = 0x07FFFFFF;
constexpr std::int64_t kPlainBase = kPlainAppendAt;
constexpr std::int64_t kPlainWholeLength = 0x3FFFFFFD;
// An append by another workstation that is under way moves the count and the length apart for a moment.
constexpr int kOpenTries = 10;
constexpr int kCountTries = 2000;
constexpr int kCountWaitMs = 5;
constexpr int kSteadyTries = 10;
// A unit takes longer to write than a block to read, so even a second try is rare.
constexpr int kReadTries = 1000;

}  // namespace

std::string TableFile::SiblingPath(const FileSystem& paths, const std::string& path,
                                   std::string_view extension) {
  const std::size_t slash = path.find_last_of("/\\");
  const std::size_t dot = path.rfind('.');
  const bool has_extension = dot != std::string::npos && (slash == std::string::npos || dot > slash);
  const std::string base = has_extension ? path.substr(0, dot) : path;
  // Names that stand already may be in other letters; a new one follows those of the data file.
  const std::string own = has_extension ? path.substr(dot + 1) : std::string();
  const bool upper = std::any_of(own.begin(), own.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
  std::string ending(extension);
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [&](char c) { return static_cast<char>(upper ? std::toupper(c) : std::tolower(c)); });
  return paths.PlatformPath(base + "." + ending);
}

std::unique_ptr<TableFile> TableFile::Open(const EngineSetup& setup, const std::string& path, Access access,
                                           int* code) {
  std::unique_ptr<TableFile> table(new TableFile(setup, path, access));
  *code = table->OpenData();
  if (*code == kSuccess) *code = table->OpenIndex();
  if (*code == kSuccess) *code = table->OpenMemo();
  if (*code == kSuccess && access.exclusive && table->read_only_) *code = kErrorReadOnly;
  return *code == kSuccess ? std::move(table) : nullptr;
}

TableFile::~TableFile() = default;

std::string TableFile::Folder() const {
  return TableFolder(path_);
}

int TableFile::TakePresence() {
  if (access_.exclusive && read_only_) return kErrorReadOnly;
  const int rc =
      data_->Raw().Lock(kTablePresenceAt, 1, access_.exclusive ? LockKind::kExclusive : LockKind::kShared);
  return rc == kLocked ? static_cast<int>(kErrorOpenRefused) : rc;
}

int TableFile::OpenData() {
  int rc = kSuccess;
  // A pack may put another file in the place of the one just opened, until its presence is known.
  for (int tries = 0; tries < kOpenTries; ++tries) {
    auto file = OpenOrRead(setup_.files, path_, OpenMode::kReadWrite, &read_only_, &rc);
    if (!file) return rc;
    data_ = std::make_unique<StagedFile>(std::move(file));
    if (rc = TakePresence(); rc != kSuccess) return rc;
    if (data_->Raw().IsStill(path_)) break;
    rc = kErrorOpenRefused;
  }
  if (rc != kSuccess) return rc;

  std::vector<std::uint8_t> bytes(kTableHeadBytes);
  if (data_->ReadAt(0, bytes.data(), bytes.size()) != kTableHeadBytes) return kErrorDataStructure;
  const int length = ReadHeaderLength(bytes);
  if (length < kTableHeadBytes) return kErrorDataStructure;
  bytes.resize(static_cast<std::size_t>(length));
  if (data_->ReadAt(0, bytes.data(), bytes.size()) != length) return kErrorDataStructure;
  if (rc = ParseTableHeader(bytes, &header_); rc != kSuccess) return rc;
  if (access_.without_index) header_.has_index = false;
  return CheckCount();
}

int TableFile::CheckCount() {
  for (int tries = 0; tries < kCountTries; ++tries) {
    const std::int64_t count = RecordCount();
    const std::int64_t size = data_->Size();
    if (count < 0 || size < 0) return kErrorRead;
    const std::int64_t held = std::max<std::int64_t>(0, size - header_.header_length) / header_.record_length;
    if (held == count) return kSuccess;
    // Whoever appends holds the header lock; without one the mismatch is there to stay.
    if (data_->Raw().Lock(AppendLockAt(), 1, LockKind::kShared) != kLocked) {
      data_->Raw().Unlock(AppendLockAt(), 1);
      // Another workstation may just be cutting back what a dead one left.
      if (tries > kSteadyTries) return kErrorDataHeader;
    } else if (held > count) {
      return kSuccess;  // a long unit writes behind the last record before its records count
    }
    setup_.clock.Sleep(kCountWaitMs);
  }
  return kErrorOpenRefused;
}

int TableFile::OpenIndex() {
  if (!header_.has_index) return kSuccess;
  int rc = kSuccess;
  index_path_ = SiblingPath(setup_.paths, path_, "CDX");
  auto file = OpenOrRead(setup_.files, index_path_, OpenMode::kReadWrite, &read_only_, &rc);
  if (!file) return setup_.files.Exists(index_path_) ? rc : static_cast<int>(kErrorIndexMissing);
  index_ = std::make_unique<IndexFile>(std::move(file), setup_.clock);
  index_->SetSizeLimit(kSmallFileLimit);
  return index_->Open(header_.fields);
}

int TableFile::ReopenIndex() {
  index_.reset();
  return OpenIndex();
}

int TableFile::Adopt(std::unique_ptr<TableFile> fresh) {
  data_ = std::move(fresh->data_);
  settled_count_ = 0;
  record_owners_.clear();
  whole_owner_ = nullptr;
  notes_.DropAll();
  memo_.reset();
  const int rc = ReopenIndex();
  return rc == kSuccess ? OpenMemo() : rc;
}

int TableFile::OpenMemo() {
  if (!header_.has_memo) return kSuccess;
  int rc = kSuccess;
  memo_path_ = SiblingPath(setup_.paths, path_, "FPT");
  auto file = OpenOrRead(setup_.files, memo_path_, OpenMode::kReadWrite, &read_only_, &rc);
  if (!file) return kErrorMemo;
  memo_ = std::make_unique<MemoFile>(std::move(file));
  return memo_->Open();
}

// --- Records ---

std::int64_t TableFile::RecordOffset(std::uint32_t record) const {
  return header_.header_length + static_cast<std::int64_t>(record - 1) * header_.record_length;
}

std::int64_t TableFile::RecordCount() {
  std::array<std::uint8_t, 4> bytes{};
  if (data_->ReadAt(4, bytes.data(), bytes.size()) != 4) return kErrorRead;
  return Load32(bytes.data());
}

std::int64_t TableFile::ReadRecords(std::uint32_t first, std::uint32_t count, std::uint8_t* buffer) {
  const std::size_t length = static_cast<std::size_t>(header_.record_length) * count;
  const std::int64_t got =
      ReadUndisturbed([&] { return data_->ReadAt(RecordOffset(first), buffer, length); });
  return got < 0 ? got : got / header_.record_length;
}

int TableFile::ReadMemo(std::uint32_t block, std::string* text) {
  if (!memo_) return kErrorMemo;
  return static_cast<int>(ReadUndisturbed([&] { return std::int64_t{memo_->Read(block, text)}; }));
}

template <class Reading>
std::int64_t TableFile::ReadUndisturbed(Reading reading) {
  for (int tries = 0; tries < kReadTries; ++tries) {
    const std::int64_t result = reading();
    int rc = kSuccess;
    if (journal_ == nullptr || access_.exclusive || journal_->WasQuiet(&rc)) return result;
    // A count of bytes is expected here, so "locked" must not pass for one.
    if (rc != kSuccess) return rc < 0 ? rc : static_cast<int>(kErrorLock);
  }
  return kErrorRead;
}

bool TableFile::Holds(std::uint32_t record, int* rc) {
  *rc = kSuccess;
  if (record <= settled_count_) return record != 0;
  const std::int64_t count = RecordCount();
  if (count < 0) *rc = kErrorRead;
  // What a unit has appended may still be taken back.
  if (count > 0 && !data_->IsDirty()) settled_count_ = static_cast<std::uint32_t>(count);
  return static_cast<std::int64_t>(record) <= count;
}

void TableFile::StageRecord(std::uint32_t record, std::span<const std::uint8_t> bytes) {
  data_->Stage(RecordOffset(record), bytes.data(), bytes.size());
}

int TableFile::StageAppend(std::span<const std::uint8_t> bytes, const Date& today, std::uint32_t* record) {
  const std::int64_t count = RecordCount();
  if (count < 0) return kErrorRead;
  if (count >= kMaxRecords) return kErrorTooLarge;
  const auto next = static_cast<std::uint32_t>(count + 1);
  if (RecordOffset(next) + header_.record_length + 1 > SizeLimit()) return kErrorTooLarge;
  StageRecord(next, bytes);
  data_->Stage(RecordOffset(next + 1), &kEndOfFileMark, 1);
  std::array<std::uint8_t, 7> head{};
  head[0] = static_cast<std::uint8_t>(std::clamp(today.year - 1900, 0, 255));
  head[1] = static_cast<std::uint8_t>(today.month);
  head[2] = static_cast<std::uint8_t>(today.day);
  Store32(&head[3], next);
  data_->Stage(1, head.data(), head.size());
  *record = next;
  return kSuccess;
}

// --- Locks ---

std::int64_t TableFile::RecordLockAt(std::uint32_t record) const {
  return header_.has_index ? kIndexedBase - record : kPlainBase + RecordOffset(record);
}

std::int64_t TableFile::AppendLockAt() const {
  return header_.has_index ? kIndexedBase : kPlainBase;
}

std::int64_t TableFile::WholeLockAt() const {
  return header_.has_index ? kIndexedBase - kIndexedWholeLength : kPlainBase + 1;
}
std::int64_t TableFile::WholeLockLength() const {
  return header_.has_index ? kIndexedWholeLength : kPlainWholeLength;
}
std::int64_t TableFile::WholeGuardAt() const {
  return header_.has_index ? WholeLockAt() : WholeLockAt() + WholeLockLength() - 1;
}

int TableFile::Try(std::int64_t offset, std::int64_t length, int attempts) {
  if (read_only_) return kErrorReadOnly;
  int rc = kLocked;
  for (int i = 0; i < std::max(1, attempts) && rc == kLocked; ++i) {
    rc = data_->Raw().Lock(offset, length, LockKind::kExclusive);
  }
  return rc;
}

int TableFile::LockRecord(const void* owner, std::uint32_t record, int attempts) {
  if (whole_owner_ != nullptr) return whole_owner_ == owner ? kSuccess : kLocked;
  const auto held = record_owners_.find(record);
  if (held != record_owners_.end()) return held->second == owner ? kSuccess : kLocked;
  const int rc = Try(RecordLockAt(record), header_.has_index ? 1 : header_.record_length, attempts);
  if (rc == kSuccess) record_owners_[record] = owner;
  return rc;
}

int TableFile::LockWhole(const void* owner, int attempts) {
  if (whole_owner_ != nullptr) return whole_owner_ == owner ? kSuccess : kLocked;
  for (const auto& [record, holder] : record_owners_) {
    if (holder != owner) return kLocked;
  }
  const int rc = Try(WholeLockAt(), WholeLockLength(), attempts);
  if (rc != kSuccess) return rc;
  record_owners_.clear();  // now part of the greater lock
  guards_whole_ = false;
  whole_owner_ = owner;
  return kSuccess;
}

bool TableFile::Owns(const void* owner, std::uint32_t record) const {
  if (whole_owner_ == owner) return true;
  const auto held = record_owners_.find(record);
  return held != record_owners_.end() && held->second == owner;
}

void TableFile::UnlockRecord(const void* owner, std::uint32_t record) {
  const auto held = record_owners_.find(record);
  if (held == record_owners_.end() || held->second != owner) return;
  data_->Raw().Unlock(RecordLockAt(record), header_.has_index ? 1 : header_.record_length);
  record_owners_.erase(held);
  notes_.Drop(record);
}

void TableFile::UnlockAll(const void* owner) {
  if (whole_owner_ == owner) {
    data_->Raw().Unlock(WholeLockAt(), WholeLockLength());
    whole_owner_ = nullptr;
    notes_.DropAll();
  }
  for (auto held = record_owners_.begin(); held != record_owners_.end();) {
    const std::uint32_t record = held->first;
    const bool own = held->second == owner;
    ++held;
    if (own) UnlockRecord(owner, record);
  }
}

void TableFile::TakeOverLocks(const void* owner) {
  if (whole_owner_ == owner) whole_owner_ = this;
  for (auto& [record, holder] : record_owners_) {
    if (holder == owner) holder = this;
  }
}

int TableFile::LockAppend(int attempts) {
  if (append_locked_) return kSuccess;
  // Who may only read keeps appends off all the same, for an examination.
  int rc =
      read_only_ ? data_->Raw().Lock(AppendLockAt(), 1, LockKind::kShared) : Try(AppendLockAt(), 1, attempts);
  append_locked_ = rc == kSuccess;
  // Another program that has the whole file locked may be writing it anew, and would lose what is appended.
  if (append_locked_ && !read_only_ && whole_owner_ == nullptr) {
    rc = data_->Raw().Lock(WholeGuardAt(), 1, LockKind::kShared);
    guards_whole_ = rc == kSuccess;
    if (!guards_whole_) UnlockAppend();
  }
  return rc;
}

void TableFile::UnlockAppend() {
  if (!append_locked_) return;
  data_->Raw().Unlock(AppendLockAt(), 1);
  append_locked_ = false;
  if (guards_whole_) data_->Raw().Unlock(WholeGuardAt(), 1);
  guards_whole_ = false;
}

// --- The unit of work ---

bool TableFile::IsDirty() const {
  return data_->IsDirty() || (index_ && index_->IsDirty()) || (memo_ && memo_->IsDirty());
}

void TableFile::Discard() {
  data_->Discard();
  if (memo_) memo_->Staged().Discard();
  if (index_) index_->Discard();
  UnlockAppend();
}

}  // namespace tallwick::engine
