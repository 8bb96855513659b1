// The engine's objects: an instance, its handles, their fields and tags. Private to the engine.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "store/engine/codebase.h"
#include "store/engine/folder_gate.h"
#include "store/engine/index_tree.h"
#include "store/engine/journal.h"
#include "store/engine/lock_notes.h"
#include "store/engine/table_file.h"

namespace tallwick::engine {

struct Field4 {
  Data4* data = nullptr;
  int number = 0;  // from 1
  FieldInfo info;
};

class Tag4 {
 public:
  Data4* data = nullptr;
  IndexTag* tag = nullptr;
  int unique_mode = 0;  // 0, kUnique, kUniqueContinue or a negative code
};

// Blocks of consecutive records read in one go, for walks over many records.
class ReadAhead {
 public:
  // The record's bytes, from a block read no earlier than the last Forget; null with *rc set on failure.
  const std::uint8_t* Get(TableFile& table, std::uint32_t record, int* rc) {
    // Most steps of a walk stay within the block of the step before.
    if (record - first_ < count_) return bytes_ + static_cast<std::size_t>(record - first_) * length_;
    return Find(table, record, rc);
  }
  // How many records, from this one on, stand one behind the other in the block last used; 1 elsewhere.
  std::uint32_t RunFrom(std::uint32_t record) const {
    return record - first_ < count_ ? first_ + count_ - record : 1;
  }
  void Forget() {
    blocks_.clear();
    count_ = 0;
  }

 private:
  struct Block {
    std::uint32_t number = 0;  // of the block; 0xFFFFFFFF = empty
    std::uint64_t used = 0;
    std::uint32_t count = 0;
    std::vector<std::uint8_t> bytes;
  };
  const std::uint8_t* Find(TableFile& table, std::uint32_t record, int* rc);
  Block* Fill(TableFile& table, std::uint32_t number, int* rc);
  Block* Reusable(std::uint32_t number);
  std::vector<Block> blocks_;
  // The block last used: its first record, its records, and their bytes.
  std::uint32_t first_ = 0;
  std::uint32_t count_ = 0;
  std::size_t length_ = 0;
  const std::uint8_t* bytes_ = nullptr;
  std::uint64_t clock_ = 0;
};

// One tag's part in a change of a record.
struct TagChange {
  Tag4* tag = nullptr;
  bool had = false;  // the old record's entry leaves the tag
  bool has = false;  // the new record's entry joins it
  std::array<std::uint8_t, kMaxKeyLength> old_key;
  std::array<std::uint8_t, kMaxKeyLength> new_key;
};

class Data4 {
 public:
  Data4(Code4& owner, TableFile& file);

  Code4& code;
  TableFile& table;
  std::vector<Field4> fields;
  std::vector<std::unique_ptr<Tag4>> tags;
  Tag4* selected = nullptr;

  std::vector<std::uint8_t> buffer;    // the record as the caller sees and changes it
  std::vector<std::uint8_t> incoming;  // one on its way into the buffer
  const std::uint8_t* view = nullptr;  // the buffer, or the record's place in a read-ahead block
  std::uint32_t record = 0;            // 0 none; count + 1 at the end
  bool changed = false;
  bool appending = false;
  bool eof = false;
  bool bof = false;
  bool wrote_in_unit = false;                 // what it shows may be undone by a rollback
  std::vector<std::uint32_t> unlock_records;  // locked for one change within a unit, until it ends
  bool unlock_at_end = false;                 // unlocked within a unit: the locks go when it ends
  std::map<int, std::pair<MemoFile::Kind, std::string>> memos;  // assigned, not yet written; by field number

  // Of the change at hand; kept from one to the next, so that a change allocates nothing.
  std::vector<TagChange> plan;       // by tag
  std::vector<std::uint8_t> before;  // the record as an append found it

  // Where the handle stands in the selected tag: its place among the pages, good for `placed_record` while
  // the index is at `place_version`; and the entry itself, where it was kept (for `place_record`; else the
  // record in view tells it).
  IndexPlace place;
  std::uint64_t place_version = 0;
  std::uint32_t placed_record = 0;
  std::vector<std::uint8_t> place_key;
  std::uint32_t place_record = 0;

  bool read_ahead = false;
  ReadAhead ahead;

  void SetView() { view = buffer.data(); }
  // Lets go of the blocks read ahead; the record in view stays.
  void ForgetAhead() {
    Own();
    ahead.Forget();
  }
  // Makes the record the caller's own before it is changed.
  std::uint8_t* Own();
  void ForgetPlace() { place_record = placed_record = 0; }
};

class Code4 {
 public:
  explicit Code4(const EngineSetup& s) : setup(s) {}

  EngineSetup setup;
  int error = 0;
  int lock_attempts = 2;
  int access_mode = 0;
  int default_unique = kUnique;
  int safety = 1;
  int unlock_auto = 0;
  bool large = false;
  std::string date_format = "CCYYMMDD";
  std::string lock_user;

  std::vector<std::unique_ptr<TableFile>> tables;
  std::vector<std::unique_ptr<Data4>> handles;
  std::map<std::string, std::shared_ptr<Journal>> journals;  // by folder

  std::unique_ptr<FolderGate> gate;       // while this instance has a folder for itself
  std::unique_ptr<LockNotes> gate_note;   // which says so to those who are refused
  std::shared_ptr<Journal> held_journal;  // while this instance keeps a folder's writers off
  std::unique_ptr<LockNotes> held_note;   // which says so to those who wait

  // --- Unit of work ---
  int unit_depth = 0;
  int unit_failure = 0;  // the error that makes the unit impossible to commit
  Journal* unit_journal = nullptr;
  std::vector<TableFile*> unit_tables;

  int Fail(int rc) {
    if (rc < 0) error = rc;
    if (rc == kLocked) lock_user.clear();
    return rc;
  }
  // The same for a lock on a record (0 = the whole table), whose holder may have left a note.
  int FailLocked(int rc, TableFile& table, std::uint32_t record) {
    Fail(rc);
    if (rc == kLocked) lock_user = table.LockHolder(record);
    return rc;
  }
  Journal& JournalOf(const std::string& folder);
  // The same for the writer's lock of a folder: kErrorCopying where its holder has noted that it copies.
  int WriterLockFailed(int rc, const std::string& folder);
  // Makes a table part of the unit: takes the writer's lock of its folder.
  int Join(TableFile& table);
  // Before a table of the folder is opened: kErrorOpenRefused while another workstation has it for itself,
  // whose name, where it has noted one, is lock_user then.
  int PassInto(const std::string& folder);
  // Writes what a long unit puts behind the ends of a table's files to them, so that it need not stay in
  // memory.
  int WriteAhead(TableFile& table);
  int CommitUnit();
  // A unit that met a lock before it changed anything lets go of the writer's lock, and of all it took with it,
  // while its caller waits: the other banks need not. The next change takes them again.
  void LetGoUnchanged();
  void EndUnit(bool committed);
};

// A change that is its own unit of work where none is open.
class UnitScope {
 public:
  explicit UnitScope(Code4& code) : code_(code) { code4unitBegin(code); }
  ~UnitScope();
  UnitScope(const UnitScope&) = delete;
  UnitScope& operator=(const UnitScope&) = delete;
  // Ends the scope: commits on success. `begun` says that files were already changed in memory, so that a
  // failure makes the surrounding unit impossible to commit.
  int End(int rc, bool begun);

 private:
  Code4& code_;
  bool ended_ = false;
};

// While it lives, the folder's journal is empty, its tables are flushed, and no workstation writes: for work
// that makes or replaces whole files, to which entries of the journal must never be applied. A folder
// without a journal stays without, unless one is asked for: then nobody else makes or replaces files either.
class QuietJournal {
 public:
  QuietJournal(Code4& code, std::string folder) : code_(code), folder_(std::move(folder)) {}
  ~QuietJournal();
  QuietJournal(const QuietJournal&) = delete;
  QuietJournal& operator=(const QuietJournal&) = delete;
  int Begin() { return Begin(false); }
  int BeginWithJournal() { return Begin(true); }

 private:
  int Begin(bool make_journal);

  Code4& code_;
  std::string folder_;
  std::shared_ptr<Journal> journal_;
  bool was_writing_ = false;
};

// While it lives, programs that know nothing of the presence byte can lock neither a record of the table nor
// append to it: for work that puts another file in its place. One that has the table open without a lock
// would go on with the old file, so it is looked for where the system can tell.
class FormatLocks {
 public:
  FormatLocks(Code4& code, TableFile& table, const void* owner)
      : code_(code), table_(table), owner_(owner), had_whole_(table.Owns(owner, 0)) {}
  ~FormatLocks();
  FormatLocks(const FormatLocks&) = delete;
  FormatLocks& operator=(const FormatLocks&) = delete;
  // kErrorOpenRefused while one holds a lock, or has the table open.
  int Take();

 private:
  Code4& code_;
  TableFile& table_;
  const void* owner_;
  bool had_whole_;
};

// Shared steps (records.cpp, navigation.cpp, instance.cpp).
std::string TablePath(const Code4& code, std::string_view path);
// The files of the table at a platform path: data, index and memo file, whether they exist or not.
std::vector<std::string> FilesOf(const Code4& code, const std::string& full);
// Writes an index with the tags of another over the records of a table.
int BuildIndexLike(Code4& code, TableFile& table, const IndexFile& like, const std::string& path,
                   const Progress& progress);
void RebindTags(Data4& data);  // after the index file of its table was replaced
void Lose(Data4& data);        // where that could not be opened again: the handle has no tags any more
int LoadRecord(Data4& data, std::uint32_t record);
void ShowEnd(Data4& data);
int WriteChanges(Data4& data);
// Asks the filters of several tags about one record. Tags mostly have the same filter, one after the other:
// it is evaluated once.
class RecordFilter {
 public:
  RecordFilter(const std::uint8_t* record, std::uint32_t number) : record_(record), number_(number) {}
  bool Includes(const IndexTag& tag);

 private:
  const std::uint8_t* record_;
  std::uint32_t number_;
  const IndexTag* asked_ = nullptr;
  bool included_ = false;
};

// Key bytes of a record for a tag; false when the filter leaves the record out.
bool KeyOf(const IndexTag& tag, const std::uint8_t* record, std::uint32_t number, std::uint8_t* key);

}  // namespace tallwick::engine
