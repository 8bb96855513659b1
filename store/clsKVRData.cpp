// The engine instance, the handles, and units of work.

#include "store/clsKVRData.h"

#include <algorithm>
#include <utility>

#include "store/engine/instance.h"
#include "store/engine/journal.h"

namespace tallwick {

namespace {

constexpr std::int32_t kPartsPerTable = 1024;  // room for field and tag positions in their handles
constexpr std::size_t kRestingHandles = 256;   // closed handles that wait before the oldest is used again
constexpr int kSharedMode = 0;
constexpr int kLockAttempts = 2;

}  // namespace

clsKVRData::clsKVRData(const StorePorts& ports, StoreSettings settings)
    : ports_(ports), settings_(settings) {}

clsKVRData::~clsKVRData() {
  FinishCodebase();
}

bool clsKVRData::InitializeCodebase() {
  if (!engine_) {
    engine_ = engine::code4initVB({ports_.clock, ports_.workstation, ports_.file_system, ports_.files});
    if (!engine_) {
      ports_.boxes.Critical("Initialize Codebase", "Initializing Codebase Failed");
      return false;
    }
  }
  engine::code4errorCode(*engine_, engine::kSuccess);
  engine::code4errOff(*engine_, 1);
  engine::code4lockAttempts(*engine_, kLockAttempts);
  engine::code4accessMode(*engine_, kSharedMode);
  header_check_ = false;
  engine::code4errDefaultUnique(*engine_, engine::kUnique);
  engine::code4safety(*engine_, 1);
  engine::code4dateFormatSet(*engine_, "CCYYMMDD");
  engine::code4unlockAutoSetCB(*engine_, 0);
  if (settings_.large_files) engine::code4largeOn(*engine_);
  engine::code4errorCode(*engine_, engine::kSuccess);
  return true;
}

void clsKVRData::FinishCodebase() {
  if (!engine_) return;
  CloseAllDatabases();
  engine::code4initUndo(*engine_);
  engine_.reset();
}

void clsKVRData::ResetCodebase() {
  if (engine_) engine::code4errorCode(*engine_, engine::kSuccess);
  last_error_ = 0;
  open_error_ = 0;
  rebuild_requested_ = false;
  header_check_ = false;
  recordNumber = 0;
  field_problem_ = {};
}

void clsKVRData::SetSharedAccess() {
  if (engine_) engine::code4accessMode(*engine_, kSharedMode);
}

int clsKVRData::Finish(int result) {
  int engine_code = engine_ ? engine::code4errorCode(*engine_, engine::kSuccess) : engine::kErrorParameter;
  bool failed = result < 0 || result == engine::kUnique || result == engine::kLocked;
  last_error_ = static_cast<std::int16_t>(failed ? result : engine_code);
  return result;
}

int clsKVRData::NotOpen() {
  last_error_ = engine::kErrorParameter;
  return engine::kErrorParameter;
}

// --- Handles ---

clsKVRData::OpenTable* clsKVRData::Find(DataHandle data) const {
  if (data <= 0 || static_cast<std::size_t>(data) > tables_.size()) return nullptr;
  return tables_[static_cast<std::size_t>(data) - 1].get();
}

engine::Field4* clsKVRData::FindField4(DataHandle data, FieldHandle field) const {
  const OpenTable* table = Find(data);
  if (!table || field / kPartsPerTable != data) return nullptr;
  auto position = static_cast<std::size_t>(field % kPartsPerTable);
  return position >= 1 && position <= table->fields.size() ? table->fields[position - 1] : nullptr;
}

engine::Tag4* clsKVRData::FindTag4(DataHandle data, TagHandle tag) const {
  const OpenTable* table = Find(data);
  if (!table || tag / kPartsPerTable != data) return nullptr;
  auto position = static_cast<std::size_t>(tag % kPartsPerTable);
  return position >= 1 && position <= table->tags.size() ? table->tags[position - 1] : nullptr;
}

TagHandle clsKVRData::HandleOf(DataHandle data, const engine::Tag4* tag) const {
  const OpenTable* table = Find(data);
  if (!table || !tag) return 0;
  auto found = std::find(table->tags.begin(), table->tags.end(), tag);
  if (found == table->tags.end()) return 0;
  return data * kPartsPerTable + 1 + static_cast<TagHandle>(found - table->tags.begin());
}

FieldHandle clsKVRData::FindField(DataHandle data, std::string_view field) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen(), 0;
  const engine::Field4* found = engine::d4field(*table->data, field);
  Finish(found ? engine::kSuccess : engine::kErrorFieldName);
  return found ? data * kPartsPerTable + engine::f4number(*found) : 0;
}

DataHandle clsKVRData::Keep(engine::Data4* data) {
  auto table = std::make_unique<OpenTable>();
  table->data = data;
  LookUpParts(*table);
  if (free_handles_.size() > kRestingHandles) {
    DataHandle handle = free_handles_.front();
    free_handles_.pop_front();
    tables_[static_cast<std::size_t>(handle) - 1] = std::move(table);
    return handle;
  }
  tables_.push_back(std::move(table));
  return static_cast<DataHandle>(tables_.size());
}

void clsKVRData::LookUpParts(OpenTable& table) {
  table.fields.clear();
  table.tags.clear();
  int count = engine::d4numFields(*table.data);
  for (int position = 1; position <= count; ++position) {
    table.fields.push_back(engine::d4fieldJ(*table.data, position));
  }
  for (engine::Tag4* tag = nullptr; (tag = engine::d4tagNext(*table.data, tag)) != nullptr;) {
    table.tags.push_back(tag);
  }
}

void clsKVRData::Forget(DataHandle data) {
  tables_[static_cast<std::size_t>(data) - 1].reset();
  free_handles_.push_back(data);
  std::erase_if(relations_, [data](const auto& entry) { return entry.second.master == data; });
}

// --- Units of work ---

int clsKVRData::BeginUnit() {
  locked_table_.clear();
  return engine_ ? Finish(engine::code4unitBegin(*engine_)) : NotOpen();
}

int clsKVRData::CommitUnit() {
  if (!engine_) return NotOpen();
  if (!unreadable_in_unit_.empty()) {
    const int code = unreadable_in_unit_.front().second;
    RollbackUnit();
    return code;
  }
  engine::Journal* journal = engine_->unit_journal;
  const int code = Finish(engine::code4unitCommit(*engine_));
  if (code == engine::kSuccess && !UnitActive())
    unit_waits_ = journal != nullptr && journal->HasUnapplied() ? journal->Recover() : engine::kSuccess;
  return code;
}

int clsKVRData::RollbackUnit() {
  if (!engine_) return NotOpen();
  const int code = Finish(engine::code4unitRollback(*engine_));
  ShowUnreadableOfUnit();
  return code;
}

void clsKVRData::ShowUnreadableOfUnit() {
  for (const auto& [table, code] : std::exchange(unreadable_in_unit_, {})) ShowUnreadable(table, code);
}

bool clsKVRData::UnitActive() const {
  return engine_ && engine::code4unitActive(*engine_);
}

}  // namespace tallwick
