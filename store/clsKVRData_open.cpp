// Opening, making, closing, packing and reindexing tables, with the messages of a failed open.

#include "core/text.h"
#include "store/clsKVRData.h"
#include "store/engine/instance.h"
#include "store/engine/journal.h"

namespace tallwick {

namespace {

constexpr int kExclusiveMode = 1;

// Failures that a rebuild of the table and its index may mend.
bool MayBeRebuilt(int code) {
  switch (code) {
    case engine::kErrorDataStructure:
    case engine::kErrorIndex:
    case engine::kErrorIndexMissing:
    case engine::kErrorTagHeader:
    case engine::kErrorTagExpression:
    case engine::kErrorTagName:
    case engine::kErrorMemo:
      return true;
    default:
      return false;
  }
}

std::string FailureText(std::string_view shown_name, std::string_view operation) {
  return Quoted(shown_name) + " failed to open @ clsKVRData." + std::string(operation) + "\r";
}

}  // namespace

std::string clsKVRData::AdjustDBName(std::string_view name) const {
  return std::string(name);
}

std::string clsKVRData::ShownName(std::string_view name) const {
  return ports_.file_system.PlatformPath(name);
}

DataHandle clsKVRData::OpenDatabase(std::string_view name) {
  return OpenWithMessages(name, "OpenDatabase");
}

DataHandle clsKVRData::OpenDatabaseExclusive(std::string_view name) {
  if (engine_) engine::code4accessMode(*engine_, kExclusiveMode);
  return OpenWithMessages(name, "OpenDatabaseExclusive");
}

DataHandle clsKVRData::OpenDatabaseSilent(std::string_view name, bool exclusive) {
  if (!engine_) return NotOpen(), 0;
  if (exclusive) engine::code4accessMode(*engine_, kExclusiveMode);
  DataHandle handle = OpenOnce(name);
  SetSharedAccess();
  Finish(open_error_);
  return handle;
}

DataHandle clsKVRData::OpenOnce(std::string_view name) {
  open_error_ = 0;
  if (engine::Data4* data = engine::d4open(*engine_, AdjustDBName(name))) return Keep(data);
  open_error_ = static_cast<std::int16_t>(engine::code4errorCode(*engine_, engine::kSuccess));
  return open_error_ < 0 ? open_error_ : 0;
}

DataHandle clsKVRData::OpenWithMessages(std::string_view name, std::string_view operation) {
  if (!engine_) return NotOpen(), 0;
  DataHandle handle = OpenOnce(name);
  if (open_error_ == engine::kErrorDataHeader) {
    if (FixDatabaseHeader(name) != engine::kSuccess) return Finish(engine::kErrorDataHeader);
    handle = OpenOnce(name);
  }
  if (handle > 0) {
    if (header_check_) CheckDatabaseHeader(handle);
    Finish(engine::kSuccess);
    return handle;
  }
  if (open_error_ != engine::kErrorOpenRefused) ReportOpenFailure(name, operation, open_error_);
  Finish(open_error_);
  return handle;
}

void clsKVRData::ReportOpenFailure(std::string_view name, std::string_view operation, int code) {
  const std::string failure = FailureText(ShownName(name), operation);
  if (!MayBeRebuilt(code)) {
    ports_.boxes.Critical("Open Database", failure + std::to_string(code));
    return;
  }
  OfferRebuild(failure, engine::error4text(code), code);
}

int clsKVRData::RefuseOpened(DataHandle data, int code, std::string_view why) {
  const std::string failure = FailureText(DatabaseName(data), "OpenDatabase");
  CloseDatabase(data);
  open_error_ = static_cast<std::int16_t>(code);
  if (MayBeRebuilt(code)) OfferRebuild(failure, why, code);
  return Finish(code);
}

void clsKVRData::OfferRebuild(std::string_view failure, std::string_view why, int code) {
  const std::string text = std::string(failure) + std::string(why) + "\rError Code:" + std::to_string(code) +
                           "\r\rWould you like to try to rebuild?";
  BoxAnswer answer =
      ports_.boxes.Show({BoxIcon::kCritical, "Open Database", text, BoxButtons::kYesNo, BoxAnswer::kNo});
  if (answer == BoxAnswer::kYes) rebuild_requested_ = true;
}

DataHandle clsKVRData::OpenDatabaseClone(DataHandle data) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen(), 0;
  open_error_ = 0;
  if (engine::Data4* clone = engine::d4openClone(*table->data)) {
    Finish(engine::kSuccess);
    return Keep(clone);
  }
  open_error_ = static_cast<std::int16_t>(engine::code4errorCode(*engine_, engine::kSuccess));
  ports_.boxes.Critical("Open Database", Quoted(DatabaseName(data)) +
                                             " failed to open @ clsKVRData.OpenDatabaseClone\r" +
                                             std::to_string(open_error_));
  Finish(open_error_);
  return open_error_ < 0 ? open_error_ : 0;
}

DataHandle clsKVRData::CreateDatabase(std::string_view name, std::span<const FieldLayout> fields,
                                      std::span<const TagLayout> tags) {
  if (!engine_) return NotOpen(), 0;
  engine::Data4* data = engine::d4create(*engine_, AdjustDBName(name), fields, tags);
  if (data) {
    Finish(engine::kSuccess);
    return Keep(data);
  }
  int code = engine::code4errorCode(*engine_, engine::kSuccess);
  Finish(code);
  return code < 0 ? code : 0;
}

int clsKVRData::CloseDatabase(DataHandle data) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen();
  int code = engine::d4close(table->data);
  Forget(data);
  return Finish(code);
}

int clsKVRData::CloseAllDatabases() {
  if (!engine_) return NotOpen();
  int code = engine::code4close(*engine_);
  for (DataHandle data = 1; static_cast<std::size_t>(data) <= tables_.size(); ++data) {
    if (Find(data)) Forget(data);
  }
  return Finish(code);
}

int clsKVRData::RemoveDatabase(DataHandle data) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen();
  if (!engine::d4exclusive(*table->data)) return Finish(engine::kErrorOpenRefused);
  int code = engine::d4remove(table->data);
  Forget(data);
  return Finish(code);
}

DataHandle clsKVRData::GetDatabasePointer(std::string_view name) {
  if (Trim(name).empty()) {
    ports_.boxes.Critical("Get Database Pointer", "GetDatabasePointer = No database specified");
    return 0;
  }
  if (!engine_) return NotOpen(), 0;
  const engine::Data4* found = engine::code4data(*engine_, ToUpper(BaseNameOf(Trim(name))));
  Finish(engine::kSuccess);
  if (!found) return 0;
  for (std::size_t i = 0; i < tables_.size(); ++i) {
    if (tables_[i] && tables_[i]->data == found) return static_cast<DataHandle>(i + 1);
  }
  return 0;
}

int clsKVRData::PackDatabase(DataHandle data, const engine::Progress& progress) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen();
  int code = engine::d4pack(*table->data, progress);
  LookUpParts(*table);
  return Finish(code);
}

int clsKVRData::ReindexDatabase(DataHandle data, const engine::Progress& progress) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen();
  int code = engine::d4reindex(*table->data, progress);
  LookUpParts(*table);
  return Finish(code);
}

int clsKVRData::VerifyDatabase(DataHandle data, std::vector<engine::TableProblem>* problems,
                               const engine::Progress& progress) {
  OpenTable* table = Find(data);
  return table ? Finish(engine::d4verify(*table->data, problems, progress)) : NotOpen();
}

int clsKVRData::CorrectMemoEnd(DataHandle data) {
  OpenTable* table = Find(data);
  return table ? Finish(engine::d4correctMemoEnd(*table->data)) : NotOpen();
}

int clsKVRData::RebuildIndex(std::string_view name, std::span<const TagLayout> tags,
                             const engine::Progress& progress) {
  return engine_ ? Finish(engine::d4rebuildIndex(*engine_, AdjustDBName(name), tags, progress)) : NotOpen();
}

// --- The journal of a folder ---

engine::JournalFindings clsKVRData::ExamineJournal(std::string_view folder) const {
  const engine::EngineSetup setup{ports_.clock, ports_.workstation, ports_.file_system, ports_.files};
  return engine::Journal(setup, ports_.file_system.PlatformPath(WithoutBackslash(folder))).Examine();
}

int clsKVRData::SetJournalAside(std::string_view folder, std::string_view name,
                                const std::vector<std::string>& files) {
  const engine::EngineSetup setup{ports_.clock, ports_.workstation, ports_.file_system, ports_.files};
  const std::string path = ports_.file_system.PlatformPath(WithoutBackslash(folder));
  return Finish(engine::Journal(setup, path).SetAside(name, files));
}

void clsKVRData::TellUnreadable(DataHandle data, int code) {
  told_unreadable_ = true;
  if (UnitActive()) {
    unreadable_in_unit_.emplace_back(DatabaseName(data), code);
  } else {
    ShowUnreadable(DatabaseName(data), code);
  }
}

void clsKVRData::ShowUnreadable(const std::string& table, int code) {
  const std::string advice(StandstillAdvice(code));
  ports_.boxes.Critical("Read Database",
                        Quoted(table) + " could not be read on (error code " + std::to_string(code) +
                            ").  What is shown is not complete" +
                            (advice.empty() ? ": have the table rebuilt, or mended with \"escrowctl mend\", "
                                              "before you rely on it."
                                            : ".\r\r" + advice + "."));
}

std::string_view clsKVRData::StandstillAdvice(int code) {
  switch (code) {
    case engine::kErrorDiskFull:
      return "The disk of the company's data is full.  Nothing is damaged, and what was posted is kept "
             "until the tables take it.  Make room on the disk, and try again";
    case engine::kErrorWrite:
    case engine::kErrorRead:
      return "The disk or the network refuses.  The tables need no mending for that, and what was posted "
             "is kept: have the disk and the network seen to, and try again";
    case engine::kLocked:
    case engine::kErrorLock:
      return "Another workstation or another program keeps the table or its index locked.  Nothing "
             "is damaged: try again in a moment";
    default:
      return {};
  }
}

std::string clsKVRData::DatabaseName(DataHandle data) const {
  const OpenTable* table = Find(data);
  return table ? engine::d4fileName(*table->data) : std::string();
}

// Every write goes through the folder's journal. Where there is none yet, it can be made only in a folder in
// which files can be made; a try with another name tells, and leaves nothing.
bool clsKVRData::IsReadOnly(DataHandle data) const {
  const OpenTable* table = Find(data);
  if (!table) return false;
  const std::string folder = table->data->table.Folder();
  if (engine::d4readOnly(*table->data) || engine_->JournalOf(folder).IsReadOnly()) return true;
  if (ports_.files.Exists(folder + "/" + std::string(engine::Journal::kFileName))) return false;
  const std::string trial = folder + "/ESCROW_" + std::to_string(ports_.workstation.ProcessId()) + ".TMP";
  int code = engine::kSuccess;
  const bool made = ports_.files.Open(trial, engine::OpenMode::kCreateNew, &code) != nullptr;
  if (made) ports_.files.Remove(trial);
  return code == engine::kErrorReadOnly;
}

bool clsKVRData::HasIndex(DataHandle data) const {
  const OpenTable* table = Find(data);
  return table && engine::d4hasIndex(*table->data);
}

}  // namespace tallwick
