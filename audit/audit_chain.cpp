#include "audit/audit_chain.h"

#include <algorithm>
#include <charconv>

#include "core/text.h"
#include "core/text_format.h"

namespace tallwick {
namespace {

constexpr std::size_t kLongestLine = 256;
constexpr std::size_t kDigestLength = 64;
constexpr std::size_t kLongestComputer = 63;
constexpr std::size_t kBlock = std::size_t{1} << 20;

// Another workstation holds the companion for as long as one append takes.
constexpr int kLockTries = 50;
constexpr int kLockWaitMs = 20;
// The byte that is locked lies far behind the companion's end.
constexpr std::int64_t kLockOffset = std::int64_t{1} << 40;

std::string_view TakeWord(std::string_view* rest) {
  const std::size_t blank = std::min(rest->find(' '), rest->size());
  const std::string_view word = rest->substr(0, blank);
  rest->remove_prefix(std::min(blank + 1, rest->size()));
  return word;
}

bool ReadNumber(std::string_view word, std::int64_t* number) {
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), *number);
  return error == std::errc() && end == word.data() + word.size() && *number >= 0;
}

bool LockInTime(engine::File& companion, engine::LockKind kind, Clock& clock) {
  for (int attempt = 0; attempt < kLockTries; ++attempt) {
    const int code = companion.Lock(kLockOffset, 1, kind);
    if (code != engine::kLocked) return code == engine::kSuccess;
    clock.Sleep(kLockWaitMs);
  }
  return false;
}

std::string WithoutDigest(const ChainRecord& record) {
  return std::string(1, record.kind) + ' ' + std::to_string(record.begin) + ' ' + std::to_string(record.end) +
         ' ' + record.moment + ' ' + record.computer;
}

}  // namespace

std::string ChainPathOf(std::string_view log_path) {
  return std::string(log_path.substr(0, log_path.rfind('.'))) + ".chain";
}

std::string ChainLine(const ChainRecord& record) {
  return std::string(1, record.kind) + ' ' + std::to_string(record.begin) + ' ' + std::to_string(record.end) +
         ' ' + record.moment + ' ' + record.digest + ' ' + record.computer + "\r\n";
}

std::optional<ChainRecord> ParseChainLine(std::string_view line) {
  ChainRecord record;
  const std::string_view kind = TakeWord(&line);
  if (kind.size() != 1 || std::string_view("EGL").find(kind) == std::string_view::npos) return std::nullopt;
  record.kind = kind.front();
  if (!ReadNumber(TakeWord(&line), &record.begin) || !ReadNumber(TakeWord(&line), &record.end))
    return std::nullopt;
  record.moment = TakeWord(&line);
  record.moment += ' ';
  record.moment += TakeWord(&line);
  record.digest = TakeWord(&line);
  record.computer = line;
  if (record.begin > record.end || record.digest.size() != kDigestLength) return std::nullopt;
  return record;
}

void StartChainDigest(Sha256& hash, std::string_view digest_before, const ChainRecord& record) {
  hash.Add(digest_before);
  hash.Add("\n");
  hash.Add(WithoutDigest(record));
  hash.Add("\n");
}

std::string ChainDigest(std::string_view digest_before, const ChainRecord& record, std::string_view bytes) {
  Sha256 hash;
  StartChainDigest(hash, digest_before, record);
  hash.Add(bytes);
  return hash.Hex();
}

ChainHold::ChainHold(const FileSystem& files, engine::FileLayer& disk, Clock& clock,
                     std::string_view log_path) {
  int code = engine::kSuccess;
  companion_ = disk.Open(files.PlatformPath(ChainPathOf(log_path)), engine::OpenMode::kReadOnly, &code);
  if (companion_) LockInTime(*companion_, engine::LockKind::kShared, clock);
}

ChainedAppend::ChainedAppend(const Place& place) : place_(place), digest_(kFirstDigest) {
  if (LockCompanion()) ReadEnd();
}

bool ChainedAppend::LockCompanion() {
  int code = engine::kSuccess;
  const std::string path = place_.files.PlatformPath(ChainPathOf(place_.log_path));
  companion_ = place_.disk.Open(path, engine::OpenMode::kOpenOrCreate, &code);
  if (companion_ && !LockInTime(*companion_, engine::LockKind::kExclusive, place_.clock))
    companion_ = nullptr;
  return companion_ != nullptr;
}

// Where the last record ended.
void ChainedAppend::ReadEnd() {
  const std::int64_t size = companion_->Size();
  if (size < 0) {
    companion_ = nullptr;
    return;
  }
  const std::int64_t from = std::max<std::int64_t>(0, size - static_cast<std::int64_t>(2 * kLongestLine));
  std::string tail(static_cast<std::size_t>(size - from), '\0');
  if (companion_->ReadAt(from, tail.data(), tail.size()) != static_cast<std::int64_t>(tail.size())) {
    companion_ = nullptr;
    return;
  }
  const std::size_t line_end = tail.rfind('\n');
  if (line_end == std::string::npos) {
    // Nothing, or only the rest of a first write; anything longer is no companion of ours and stays.
    kept_ = from == 0 ? 0 : size;
    if (from != 0) lines_ = "\r\n";
    return;
  }
  kept_ = from + static_cast<std::int64_t>(line_end) + 1;
  const std::size_t before = line_end == 0 ? std::string::npos : tail.rfind('\n', line_end - 1);
  const std::size_t start = before == std::string::npos ? 0 : before + 1;
  const std::string_view line = TrimRight(std::string_view(tail).substr(start, line_end - start));
  const std::optional<ChainRecord> last = ParseChainLine(line);
  if (!last) return;
  recorded_ = last->kind == 'L' ? last->begin : last->end;
  digest_ = last->digest;
}

bool ChainedAppend::Append(std::string_view bytes) {
  if (!companion_) return place_.files.Append(place_.log_path, bytes);
  TakeUpGap();
  const bool appended = place_.files.Append(place_.log_path, bytes);
  const std::int64_t size = LogSize();
  if (appended && size == recorded_ + static_cast<std::int64_t>(bytes.size())) {
    Record('E', recorded_, size, bytes);
  } else if (size > recorded_) {
    RecordAmongOthers(bytes, size);
  }
  WriteRecords();
  return appended;
}

std::int64_t ChainedAppend::LogSize() const {
  return static_cast<std::int64_t>(place_.files.SizeOf(place_.log_path).value_or(0));
}

void ChainedAppend::TakeUpGap() {
  const std::int64_t size = LogSize();
  if (size < recorded_) {
    Record('L', size, recorded_, {});
  } else if (size > recorded_) {
    RecordFromLog(recorded_, size);
  }
}

ChainRecord ChainedAppend::NewRecord(char kind, std::int64_t begin, std::int64_t end) const {
  ChainRecord record{kind, begin,
                     end,  FormatDateTime(place_.clock.Now(), "yyyy-mm-dd hh:nn:ss"),
                     {},   place_.computer.substr(0, kLongestComputer)};
  std::replace_if(
      record.computer.begin(), record.computer.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  record.computer = Trim(record.computer);
  return record;
}

void ChainedAppend::Record(char kind, std::int64_t begin, std::int64_t end, std::string_view bytes) {
  ChainRecord record = NewRecord(kind, begin, end);
  record.digest = digest_ = ChainDigest(digest_, record, bytes);
  recorded_ = kind == 'L' ? begin : end;
  lines_ += ChainLine(record);
}

// Somebody wrote without the lock in the same moment, or the log took only the first part of the bytes.
void ChainedAppend::RecordAmongOthers(std::string_view bytes, std::int64_t size) {
  const auto length = static_cast<std::size_t>(size - recorded_);
  const std::string behind =
      length <= bytes.size() + kBlock
          ? place_.files.ReadPart(place_.log_path, static_cast<std::uint64_t>(recorded_), length).value_or("")
          : std::string();
  if (!behind.empty() && bytes.starts_with(behind)) return Record('E', recorded_, size, behind);
  const std::size_t own = behind.find(bytes);
  if (own == std::string::npos || behind.empty()) return RecordFromLog(recorded_, size);
  const std::int64_t begin = recorded_ + static_cast<std::int64_t>(own);
  if (own > 0) RecordFromLog(recorded_, begin);
  if (recorded_ != begin) return;  // could not be read; the next writer tries again
  Record('E', begin, begin + static_cast<std::int64_t>(bytes.size()), bytes);
  if (recorded_ < size) RecordFromLog(recorded_, size);
}

// Bytes that are in the log already, read block by block: the gap may be a whole log.
void ChainedAppend::RecordFromLog(std::int64_t begin, std::int64_t end) {
  int code = engine::kSuccess;
  const std::unique_ptr<engine::File> log =
      place_.disk.Open(place_.files.PlatformPath(place_.log_path), engine::OpenMode::kReadOnly, &code);
  if (!log) return;
  ChainRecord record = NewRecord('G', begin, end);
  Sha256 hash;
  StartChainDigest(hash, digest_, record);
  std::string block(kBlock, '\0');
  for (std::int64_t at = begin; at < end;) {
    const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(end - at, kBlock));
    const std::int64_t count = log->ReadAt(at, block.data(), wanted);
    if (count <= 0) return;  // the next writer tries again
    hash.Add(std::string_view(block).substr(0, static_cast<std::size_t>(count)));
    at += count;
  }
  record.digest = digest_ = hash.Hex();
  recorded_ = end;
  lines_ += ChainLine(record);
}

void ChainedAppend::WriteRecords() {
  if (lines_.empty()) return;
  if (companion_->Size() > kept_ && companion_->Truncate(kept_) != engine::kSuccess) return;
  if (companion_->WriteAt(kept_, lines_.data(), lines_.size()) != engine::kSuccess) return;
  kept_ += static_cast<std::int64_t>(lines_.size());
  lines_.clear();
}

}  // namespace tallwick
