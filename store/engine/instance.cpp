// Engine instances and the opening and closing of tables.
#include "store/engine/instance.h"

#include <algorithm>

#include "core/text.h"
#include "store/engine/file_swap.h"

void std::default_delete<tallwick::engine::Code4>::operator()(tallwick::engine::Code4* code) const {
  tallwick::engine::code4initUndo(*code);
  delete code;
}

namespace tallwick::engine {
namespace {

constexpr int kOpenTries = 10;

Data4* AddHandle(Code4& code, TableFile& table) {
  code.handles.push_back(std::make_unique<Data4>(code, table));
  ++table.handles;
  return code.handles.back().get();
}

TableFile* FindTable(Code4& code, const std::string& path) {
  for (const auto& table : code.tables) {
    if (SamePath(table->Path(), path)) return table.get();
  }
  return nullptr;
}

// Readers see no unit half done; readers and writers of an index first finish what a dead writer left in the
// folder's journal.
void HookRecovery(Code4& code, TableFile& table) {
  Journal& journal = code.JournalOf(table.Folder());
  table.Heed(&journal);
  if (table.Index() == nullptr) return;
  table.Index()->SetRecovery([&journal] { return journal.Recover(); },
                             [&journal] { return journal.HasOrphans(); },
                             [&code] { return code.unit_journal != nullptr; });
}

}  // namespace

void RebindTags(Data4& data) {
  HookRecovery(data.code, data.table);
  const auto& fresh = data.table.Index()->Tags();
  for (std::size_t i = 0; i < data.tags.size() && i < fresh.size(); ++i) data.tags[i]->tag = fresh[i].get();
  data.ForgetPlace();
  data.place_version = 0;
}

void Lose(Data4& data) {
  data.table.lost = true;
  data.selected = nullptr;
  data.tags.clear();
  data.ForgetPlace();
}

namespace {

// The last table of a folder takes the journal with it, which makes everything durable.
void LeaveFolder(Code4& code, const std::string& folder) {
  const bool used = std::any_of(code.tables.begin(), code.tables.end(),
                                [&](const auto& table) { return table->Folder() == folder; });
  const auto journal = code.journals.find(folder);
  if (!used && journal != code.journals.end() && !journal->second->IsWriting()) code.journals.erase(journal);
}

}  // namespace

std::vector<std::string> FilesOf(const Code4& code, const std::string& full) {
  return {full, TableFile::SiblingPath(code.setup.paths, full, "CDX"),
          TableFile::SiblingPath(code.setup.paths, full, "FPT")};
}

std::string TablePath(const Code4& code, std::string_view path) {
  const std::string_view name = FileNameOf(path);
  const bool bare = name.find('.') == std::string_view::npos;
  return code.setup.paths.PlatformPath(bare ? std::string(path) + ".dbf" : std::string(path));
}

int Code4::PassInto(const std::string& folder) {
  if (gate != nullptr && gate->Folder() == folder) return kSuccess;
  const int rc = PassGate(setup.files, setup.clock, folder);
  if (rc == kErrorOpenRefused)
    lock_user = LockNotes(setup, folder + "/" + std::string(FolderGate::kFileName)).Holder(0);
  return rc;
}

// --- Settings ---

std::unique_ptr<Code4> code4initVB(const EngineSetup& setup) {
  return std::make_unique<Code4>(setup);
}

int code4close(Code4& code) {
  int result = kSuccess;
  for (std::size_t i = code.handles.size(); i > 0; --i) {
    if (const int rc = d4close(code.handles[i - 1].get()); rc != kSuccess) result = rc;
  }
  return result;
}

int code4initUndo(Code4& code) {
  if (code.unit_depth > 0) code4unitRollback(code);
  const int rc = code4close(code);
  code4releaseWriters(code);
  code4releaseFolder(code);
  code.journals.clear();
  return rc;
}

int code4errorCode(Code4& code, int value) {
  const int previous = code.error;
  if (value != -5) code.error = value;
  return previous;
}

int error4set(Code4& code, int value) {
  return code4errorCode(code, value);
}
void code4errOff(Code4&, int) {}

int code4lockAttempts(Code4& code, int attempts) {
  return std::exchange(code.lock_attempts, std::max(1, attempts));
}
int code4accessMode(Code4& code, int mode) {
  return std::exchange(code.access_mode, mode);
}
int code4errDefaultUnique(Code4& code, int mode) {
  return std::exchange(code.default_unique, mode);
}
int code4safety(Code4& code, int on) {
  return std::exchange(code.safety, on);
}
int code4unlockAutoSetCB(Code4& code, int mode) {
  return std::exchange(code.unlock_auto, mode);
}
void code4dateFormatSet(Code4& code, std::string_view format) {
  code.date_format = format;
}
void code4largeOn(Code4& code) {
  code.large = true;
}

int code4unlock(Code4& code) {
  int result = kSuccess;
  for (const auto& handle : code.handles) {
    if (const int rc = d4unlock(*handle); rc != kSuccess) result = rc;
  }
  return result;
}

Data4* code4data(Code4& code, std::string_view alias) {
  for (const auto& handle : code.handles) {
    if (EqualsIgnoreCase(d4alias(*handle), Trim(alias))) return handle.get();
  }
  return nullptr;
}

std::string code4lockUserId(Code4& code) {
  return code.lock_user;
}

// --- Tables ---

namespace {

// Whoever replaces files sees by the presences whether anybody has a table open; so what was looked at before
// this presence was known is looked at again.
bool IsAtRest(Code4& code, const std::string& full) {
  const std::string folder = TableFolder(full);
  const bool alone = code.gate != nullptr && code.gate->Folder() == folder;
  return !IsSwapListed(code.setup.files, full) && (alone || !IsGateClosed(code.setup.files, folder));
}

std::unique_ptr<TableFile> OpenAtRest(Code4& code, const std::string& full, bool exclusive, int* rc) {
  for (int tries = 0; tries < kOpenTries; ++tries) {
    *rc = code.PassInto(TableFolder(full));
    if (*rc == kSuccess) *rc = code.JournalOf(TableFolder(full)).Recover();
    if (*rc == kSuccess) *rc = FinishSwap(code.setup.files, full, FilesOf(code, full));
    std::unique_ptr<TableFile> table;
    if (*rc == kSuccess) table = TableFile::Open(code.setup, full, {exclusive, code.large, false}, rc);
    if (!table || IsAtRest(code, full)) return table;
  }
  *rc = kErrorOpenRefused;
  return nullptr;
}

}  // namespace

Data4* d4open(Code4& code, std::string_view path) {
  const std::string full = TablePath(code, path);
  const bool exclusive = code.access_mode == 1;
  if (TableFile* open = FindTable(code, full)) {
    if (!exclusive && !open->Exclusive()) return AddHandle(code, *open);
    code.Fail(kErrorOpenRefused);
    return nullptr;
  }
  int rc = kSuccess;
  std::unique_ptr<TableFile> table = OpenAtRest(code, full, exclusive, &rc);
  if (!table) {
    LeaveFolder(code, TableFolder(full));
    // A writer that holds the folder and does not come to an end.
    code.Fail(rc == kLocked ? static_cast<int>(kErrorOpenRefused) : rc);
    return nullptr;
  }
  HookRecovery(code, *table);
  code.tables.push_back(std::move(table));
  return AddHandle(code, *code.tables.back());
}

Data4* d4openClone(Data4& data) {
  return AddHandle(data.code, data.table);
}

int d4close(Data4* data) {
  Code4& code = data->code;
  int rc = data->appending ? static_cast<int>(kSuccess) : WriteChanges(*data);
  TableFile* table = &data->table;
  if (code.unit_depth > 0) {
    table->TakeOverLocks(data);  // what the unit changed stays locked until it ends
  } else {
    table->UnlockAll(data);
  }
  std::erase_if(code.handles, [&](const auto& handle) { return handle.get() == data; });
  if (--table->handles > 0) return rc;
  // The unit may not lose one of its tables: what it has staged would never be written.
  if (std::find(code.unit_tables.begin(), code.unit_tables.end(), table) != code.unit_tables.end()) {
    code.EndUnit(false);
    rc = code.Fail(kErrorClose);
  }
  const std::string folder = table->Folder();
  std::erase_if(code.tables, [&](const auto& open) { return open.get() == table; });
  LeaveFolder(code, folder);
  return rc;
}

int d4remove(Data4* data) {
  Code4& code = data->code;
  if (!data->table.Exclusive() || data->table.handles > 1) return code.Fail(kErrorOpenRefused);
  const std::vector<std::string> files = {data->table.Path(), data->table.IndexPath(),
                                          data->table.MemoPath()};
  data->changed = data->appending = false;
  QuietJournal quiet(code, data->table.Folder());
  int rc = quiet.Begin();
  if (const int closed = d4close(data); rc == kSuccess) rc = closed;
  for (const std::string& file : files) {
    if (rc == kSuccess && !file.empty() && code.setup.files.Exists(file)) rc = code.setup.files.Remove(file);
  }
  return code.Fail(rc);
}

int d4setAside(Code4& code, std::string_view path, const std::string& kept) {
  const std::string full = TablePath(code, path);
  const std::string index = TableFile::SiblingPath(code.setup.paths, full, "CDX");
  FileLayer& files = code.setup.files;
  QuietJournal quiet(code, TableFolder(full));
  int rc = quiet.BeginWithJournal();
  std::unique_ptr<File> data;
  if (rc == kSuccess) data = files.Open(full, OpenMode::kReadWrite, &rc);
  if (data) rc = data->Lock(kTablePresenceAt, 1, LockKind::kExclusive);
  if (rc == kLocked) rc = kErrorOpenRefused;
  if (rc == kSuccess) rc = files.Rename(full, kept);
  if (rc == kSuccess && files.Exists(index)) rc = files.Remove(index);
  if (rc == kSuccess) rc = files.FlushFolder(TableFolder(full));
  return code.Fail(rc);
}

int d4headerCheck(Data4& data) {
  return data.code.Fail(data.table.CheckCount());
}
std::string d4fileName(const Data4& data) {
  return data.table.Path();
}
std::string d4alias(const Data4& data) {
  return ToUpper(BaseNameOf(data.table.Path()));
}
bool d4readOnly(const Data4& data) {
  return data.table.IsReadOnly();
}
bool d4exclusive(const Data4& data) {
  return data.table.Exclusive();
}
int d4recordLength(const Data4& data) {
  return data.table.Header().record_length;
}
bool d4hasIndex(const Data4& data) {
  return data.table.Index() != nullptr;
}

}  // namespace tallwick::engine
