// Appending, locking and writing records. A locked result is tried again every half second, at most ten
// times; when an operation is given up the record is marked unchanged, so that nothing writes it later by
// accident.
//
// Within a unit of work no box is shown: the first change has taken the folder's journal, and a box that
// waits for a person would keep every workstation from writing. The code goes back to whoever runs the unit.

#include <limits>

#include "core/text.h"
#include "store/clsKVRData.h"

namespace tallwick {

namespace {

constexpr int kRetryMilliseconds = 500;
constexpr int kMaxLockRetries = 10;

constexpr std::string_view kUpdateFailed = "Failed To Update Record";

}  // namespace

// --- Appending ---

int clsKVRData::AddRecordStart(DataHandle data) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen();
  int code = engine::d4appendStart(*table->data);
  if (code == engine::kSuccess) engine::d4blank(*table->data);
  return Finish(code);
}

int clsKVRData::AddRecordFinish(DataHandle data, std::string_view unique_id_field) {
  return FinishAppend(data, unique_id_field, false);
}

int clsKVRData::AddRecordFinishSilent(DataHandle data, std::string_view unique_id_field) {
  return FinishAppend(data, unique_id_field, true);
}

int clsKVRData::FinishAppend(DataHandle data, std::string_view unique_id_field, bool silent) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen();
  FieldHandle unique_id = unique_id_field.empty() ? 0 : FindField(data, unique_id_field);
  const bool quiet = silent || UnitActive();
  bool reported = quiet;
  int code = AppendWithRetries(data, unique_id, quiet, reported);
  if (code != engine::kSuccess) {
    if (!reported) ReportUpdateFailure(data, code);
    engine::d4changed(*table->data, 0);
  }
  NoteLocked(*table, code);
  if (code == engine::kSuccess) TellWritten(data);
  int unlocked = quiet ? UnlockTheRecordSilent(data) : UnlockTheRecord(data);
  return Moved(*table, code != engine::kSuccess ? code : unlocked);
}

int clsKVRData::AppendWithRetries(DataHandle data, FieldHandle unique_id, bool silent, bool& reported) {
  OpenTable* table = Find(data);
  engine::Field4* id_field = FindField4(data, unique_id);
  long id = id_field ? engine::f4long(*id_field) : 0;
  int lock_retries = 0;
  int id_retries = 0;
  for (;;) {
    int code = Finish(engine::d4append(*table->data));
    if (code == engine::kLocked && lock_retries < kMaxLockRetries) {
      ++lock_retries;
      ports_.clock.Sleep(kRetryMilliseconds);
    } else if (code == engine::kUnique && id_field) {
      if (++id_retries > settings_.max_unique_id_retries) {
        if (!silent) AddDatabaseUIDErrorMsg(data, code, static_cast<std::int32_t>(id), id_retries);
        reported = true;
        return code;
      }
      if (id >= std::numeric_limits<std::int32_t>::max()) return code;
      if (engine::f4assignLong(*id_field, ++id) != engine::kSuccess) return code;
    } else {
      return code;
    }
  }
}

std::string clsKVRData::AdviceFor(int code) const {
  const std::string holder = engine_ ? engine::code4lockUserId(*engine_) : std::string();
  switch (code) {
    case engine::kLocked:
      return "Another workstation or another program keeps " +
             (locked_table_.empty() ? "a table" : locked_table_) +
             " or a record of it locked.  Nothing was saved: try again in a moment.";
    case engine::kErrorCopying:
      return (holder.empty() ? "Another workstation" : holder) +
             " is making a copy of the data.  Nothing was saved: try again when the copy is done.";
    case engine::kErrorReadOnly:
      return "The company's data may only be read here: the folder, or one of its files, is "
             "write-protected.  Nothing was saved: have the rights on the folder, or its disk, seen to, and "
             "start again.";
    case engine::kErrorDiskFull:
      return "The disk of the company's data is full.  Nothing was saved: make room on it and try again.";
    case engine::kErrorWrite:
      return "The disk or the network refused to write.  Nothing was saved: have it seen to and try again.";
    case engine::kErrorJournal:
      return "The journal of the company's folder can not be used, or was taken away while the program ran.  "
             "Nothing was saved: leave the program and start it again.  When that is no help, \"escrowctl "
             "verify\" says what is wrong.";
    default:
      return {};
  }
}

void clsKVRData::NoteLocked(const OpenTable& table, int code) {
  if (code == engine::kLocked) locked_table_ = engine::d4alias(*table.data);
}

void clsKVRData::ReportUpdateFailure(DataHandle data, int code) {
  const OpenTable* table = Find(data);
  std::string text =
      "Error: " + std::to_string(code) + "\r\n\r\nDatabase: " + DatabaseName(data) + "\r\n\r\n";
  const std::string holder = code == engine::kLocked ? engine::code4lockUserId(*engine_) : std::string();
  if (!holder.empty()) text += "In use by " + holder + "\r\n\r\n";
  if (const std::string advice = AdviceFor(code); code < 0 && !advice.empty()) text += advice + "\r\n\r\n";
  for (const engine::Tag4* tag : table->tags) {
    int unique = engine::t4unique(*tag);
    if (unique != engine::kUnique && unique != engine::kUniqueContinue) continue;
    text += "Tag: " + engine::t4alias(*tag) + "\r\nExpression: " + engine::t4exprCB(*tag) +
            "\r\nFilter: " + engine::t4filterCB(*tag) +
            "\r\nUnique Value: " + (unique == engine::kUnique ? "r4unique" : "r4uniqueContinue") + "\r\n\r\n";
  }
  ports_.boxes.Critical(kUpdateFailed, text);
}

void clsKVRData::AddDatabaseUIDErrorMsg(DataHandle data, int code, std::int32_t unique_id, int retries) {
  ports_.boxes.Critical(kUpdateFailed, "Error " + std::to_string(code) + "\rFailed to Add Unique ID to " +
                                           DatabaseName(data) + "\r\rUID: " + std::to_string(unique_id) +
                                           "\r\rRetries = " + std::to_string(retries));
}

// --- Locks ---

bool clsKVRData::LockTheRecord(DataHandle data, bool no_prompt) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen(), false;
  std::uint32_t record = engine::d4recNoLow(*table->data);
  if (record == 0 || engine::d4eof(*table->data)) return Finish(engine::kSuccess), true;
  for (;;) {
    int code = Finish(engine::d4lockVB(*table->data, record));
    if (code == engine::kSuccess) return true;
    NoteLocked(*table, code);
    if (code != engine::kLocked || no_prompt || UnitActive()) return false;
    const std::string holder = engine::code4lockUserId(*engine_);
    BoxAnswer answer =
        ports_.boxes.Show({BoxIcon::kExclamation, "Locked Record",
                           "Information in use..." + (holder.empty() ? "" : "\r\rIn use by " + holder),
                           BoxButtons::kRetryCancel, BoxAnswer::kRetry});
    if (answer != BoxAnswer::kRetry) return false;
    Finish(engine::d4refreshRecord(*table->data));
  }
}

int clsKVRData::UnlockTheRecord(DataHandle data) {
  return RetryWhileLocked(data, engine::d4unlock, false);
}

int clsKVRData::UnlockTheRecordSilent(DataHandle data) {
  return RetryWhileLocked(data, engine::d4unlock, true);
}

int clsKVRData::WriteTheRecord(DataHandle data) {
  const int code = RetryWhileLocked(data, engine::d4flush, false);
  if (code == engine::kSuccess) TellWritten(data);
  return code;
}

void clsKVRData::TellWritten(DataHandle data) {
  for (const auto& [number, watcher] : write_watchers_) watcher(data, CurrentRecord(data));
}

int clsKVRData::WatchWrites(WriteWatcher watcher) {
  const int number = write_watchers_.empty() ? 1 : write_watchers_.rbegin()->first + 1;
  write_watchers_.emplace(number, std::move(watcher));
  return number;
}

int clsKVRData::RetryWhileLocked(DataHandle data, int (*step)(engine::Data4&), bool silent) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen();
  int code = step(*table->data);
  for (int retries = 0; code == engine::kLocked && retries < kMaxLockRetries; ++retries) {
    ports_.clock.Sleep(kRetryMilliseconds);
    code = step(*table->data);
  }
  Finish(code);
  if (code == engine::kSuccess) return code;
  NoteLocked(*table, code);
  engine::d4changed(*table->data, 0);
  if (!silent && !UnitActive()) ReportUpdateFailure(data, code);
  return code;
}

int clsKVRData::RemoveAllLocks() {
  return engine_ ? Finish(engine::code4unlock(*engine_)) : NotOpen();
}

// --- The buffer ---

int clsKVRData::DeleteRecord(DataHandle data) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen();
  engine::d4delete(*table->data);
  return Finish(engine::kSuccess);
}

int clsKVRData::RecallRecord(DataHandle data) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen();
  engine::d4recall(*table->data);
  return Finish(engine::kSuccess);
}

int clsKVRData::SetChangedFlag(DataHandle data, bool changed) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen();
  engine::d4changed(*table->data, changed ? 1 : 0);
  return Finish(engine::kSuccess);
}

int clsKVRData::RefreshRecord(DataHandle data) {
  OpenTable* table = Find(data);
  return table ? Moved(*table, engine::d4refreshRecord(*table->data)) : NotOpen();
}

std::span<const std::uint8_t> clsKVRData::RecordRun(DataHandle data) const {
  const OpenTable* table = Find(data);
  return table ? engine::d4recordRun(*table->data) : std::span<const std::uint8_t>();
}

std::span<const std::uint8_t> clsKVRData::RecordBytes(DataHandle data) const {
  const OpenTable* table = Find(data);
  return table ? engine::d4record(*table->data) : std::span<const std::uint8_t>();
}

}  // namespace tallwick
