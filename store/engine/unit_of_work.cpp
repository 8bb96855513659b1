// Units of work: the changes of several tables of one folder, written through the folder's journal.
#include <algorithm>
#include <deque>
#include <limits>

#include "core/file_system.h"
#include "store/engine/instance.h"

namespace tallwick::engine {
namespace {

// So many staged bytes of a table are worth a look at what can go to the files already.
constexpr std::size_t kAheadStep = std::size_t{2} << 20;

std::string NameOf(const std::string& path) {
  return std::string(FileNameOf(path));
}

void AddStaged(const std::string& path, StagedFile& file, std::vector<JournalFileChange>* changes) {
  if (!file.IsDirty()) return;
  JournalFileChange change{NameOf(path), &file.Raw(), {}};
  for (const auto& [offset, bytes] : file.Extents()) change.extents.push_back({offset, bytes});
  changes->push_back(std::move(change));
}

// Index pages are encoded into `store`, which must outlive the change.
int AddIndex(const std::string& path, IndexFile& index, std::deque<std::vector<std::uint8_t>>* store,
             std::vector<JournalFileChange>* changes) {
  if (!index.IsDirty()) return kSuccess;
  JournalFileChange change{NameOf(path), &index.Raw(), {}};
  for (const auto& run : index.PackedPages()) change.extents.push_back({run.offset, run.bytes});
  const std::size_t packed = change.extents.size();
  const int rc = index.Collect([&](std::int64_t offset, const std::uint8_t* bytes, std::size_t length) {
    auto& last = change.extents;
    const bool adjoins = last.size() > packed &&
                         last.back().offset + static_cast<std::int64_t>(last.back().bytes.size()) == offset &&
                         store->back().size() + length <= (std::size_t{1} << 20);
    if (!adjoins) {
      store->emplace_back(bytes, bytes + length);
      last.push_back({offset, store->back()});
      return;
    }
    store->back().insert(store->back().end(), bytes, bytes + length);
    last.back().bytes = store->back();
  });
  changes->push_back(std::move(change));
  return rc;
}

// After a rollback a handle shows what stands in the file, unless its caller has an edit of his own in it.
void SettleHandle(Data4& handle, bool committed) {
  handle.ForgetAhead();
  const bool shows_undone = !committed && !handle.appending && (handle.wrote_in_unit || !handle.changed);
  handle.wrote_in_unit = false;
  if (!shows_undone) return;
  handle.changed = false;
  handle.memos.clear();
  handle.ForgetPlace();
  if (handle.record != 0 && !handle.eof && LoadRecord(handle, handle.record) != kSuccess) ShowEnd(handle);
}

}  // namespace

Journal& Code4::JournalOf(const std::string& folder) {
  auto& journal = journals[folder];
  if (!journal) journal = std::make_shared<Journal>(setup, folder);
  return *journal;
}

// Locks of a moment leave no note, so a note on the journal is that of a copy.
int Code4::WriterLockFailed(int rc, const std::string& folder) {
  if (rc != kLocked) return rc;
  lock_user = LockNotes(setup, folder + "/" + std::string(Journal::kFileName)).Holder(0);
  return lock_user.empty() ? rc : static_cast<int>(kErrorCopying);
}

int Code4::Join(TableFile& table) {
  if (unit_failure != 0) return unit_failure;
  if (table.lost) return kErrorClose;
  if (std::find(unit_tables.begin(), unit_tables.end(), &table) != unit_tables.end()) return kSuccess;
  Journal& journal = JournalOf(table.Folder());
  // One journal makes a unit whole, so a unit stays within one folder.
  if (unit_journal != nullptr && unit_journal != &journal) return kErrorParameter;
  if (table.IsReadOnly()) return kErrorReadOnly;
  if (const int rc = journal.BeginWriting(); rc != kSuccess) return WriterLockFailed(rc, table.Folder());
  unit_journal = &journal;
  unit_tables.push_back(&table);
  return kSuccess;
}

int Code4::CommitUnit() {
  std::vector<JournalFileChange> changes;
  std::deque<std::vector<std::uint8_t>> pages;
  for (TableFile* table : unit_tables) {
    if (table->Index() != nullptr && table->Index()->IsLockedForChange()) {
      if (const int rc = table->Index()->SettleQueues(); rc != kSuccess) return rc;
    }
    AddStaged(table->Path(), table->Data(), &changes);
    if (table->Memo() != nullptr) {
      AddStaged(table->MemoPath(), table->Memo()->Staged(), &changes);
    }
    if (table->Index() != nullptr) {
      if (const int rc = AddIndex(table->IndexPath(), *table->Index(), &pages, &changes); rc != kSuccess)
        return rc;
    }
  }
  return changes.empty() ? static_cast<int>(kSuccess) : unit_journal->Commit(changes);
}

int Code4::WriteAhead(TableFile& table) {
  StagedFile& data = table.Data();
  StagedFile* memo = table.Memo() != nullptr ? &table.Memo()->Staged() : nullptr;
  // Asked after each append, so the usual answer must cost nothing.
  if (data.RecentBytes() + (memo != nullptr ? memo->RecentBytes() : 0) < kAheadStep) return kSuccess;
  std::vector<JournalFileChange> changes;
  AddStaged(table.Path(), data, &changes);
  if (memo != nullptr) AddStaged(table.MemoPath(), *memo, &changes);
  if (const int rc = unit_journal->WriteAhead(changes); rc != kSuccess) return rc;
  constexpr std::int64_t kNowhere = std::numeric_limits<std::int64_t>::max();
  data.DropFrom(unit_journal->AheadOf(NameOf(table.Path())).value_or(kNowhere));
  if (memo != nullptr) memo->DropFrom(unit_journal->AheadOf(NameOf(table.MemoPath())).value_or(kNowhere));
  return kSuccess;
}

void Code4::LetGoUnchanged() {
  if (unit_journal == nullptr || unit_journal->HasWrittenAhead()) return;
  if (std::any_of(unit_tables.begin(), unit_tables.end(), [](auto* table) { return table->IsDirty(); }))
    return;
  for (TableFile* table : unit_tables) table->Discard();
  unit_journal->EndWriting();
  unit_journal = nullptr;
  unit_tables.clear();
}

void Code4::EndUnit(bool committed) {
  if (!committed && unit_journal != nullptr) unit_journal->Abandon();
  // Pages in memory may stand for the files only when the files have them.
  const bool applied = committed && (unit_journal == nullptr || !unit_journal->HasUnapplied());
  for (TableFile* table : unit_tables) {
    if (applied && table->Index() != nullptr && table->Index()->IsLockedForChange())
      table->Index()->Publish();
    table->Discard();
  }
  for (const auto& handle : handles) {
    const bool part = std::find(unit_tables.begin(), unit_tables.end(), &handle->table) != unit_tables.end();
    if (part || handle->wrote_in_unit) SettleHandle(*handle, committed);
    for (const std::uint32_t record : handle->unlock_records)
      handle->table.UnlockRecord(handle.get(), record);
    handle->unlock_records.clear();
    if (handle->unlock_at_end) handle->table.UnlockAll(handle.get());
    handle->unlock_at_end = false;
  }
  for (const auto& table : tables) table->UnlockAll(table.get());  // of handles closed within the unit
  if (unit_journal != nullptr) unit_journal->EndWriting();
  unit_journal = nullptr;
  unit_tables.clear();
  unit_failure = 0;
  unit_depth = 0;
}

int code4unitBegin(Code4& code) {
  ++code.unit_depth;
  return kSuccess;
}

bool code4unitActive(const Code4& code) {
  return code.unit_depth > 0;
}

int code4unitCommit(Code4& code) {
  if (code.unit_depth == 0) return code.Fail(kErrorParameter);
  if (code.unit_depth > 1) {
    --code.unit_depth;
    return code.unit_failure;
  }
  const int rc = code.unit_failure != 0 ? code.unit_failure : code.CommitUnit();
  code.EndUnit(rc == kSuccess);
  return code.Fail(rc);
}

int code4unitRollback(Code4& code) {
  if (code.unit_depth == 0) return code.Fail(kErrorParameter);
  code.EndUnit(false);
  return kSuccess;
}

UnitScope::~UnitScope() {
  if (!ended_) End(kErrorParameter, true);
}

int UnitScope::End(int rc, bool begun) {
  ended_ = true;
  if (rc == kSuccess) return code4unitCommit(code_);
  if (code_.unit_depth == 1) {
    code_.EndUnit(false);
  } else if (code_.unit_depth > 1) {
    --code_.unit_depth;
    if (begun) {
      code_.unit_failure = rc < 0 ? rc : static_cast<int>(kErrorParameter);
    } else if (rc == kLocked) {
      code_.LetGoUnchanged();
    }
  }
  return code_.Fail(rc);
}

}  // namespace tallwick::engine
