// The only door to the record engine: tables, tags, records and fields for every other layer.
//
// Invariants:
//  - after every operation the engine's error code has been copied to LastErrorCode() and cleared, so that
//  one failure
//    never poisons the next operation;
//  - texts are UTF-8 on this side and Windows-1252 in the tables. A value that a field cannot hold exactly
//  (too wide, a
//    character outside the code page, a date that is none) is refused and never cut: the setter returns
//    engine::kErrorFieldValue, the field keeps what it had, and LastFieldProblem() says why;
//  - handles are numbers. A data handle of 0 or below is not open, a field or tag handle of 0 is none;
//  getters then give
//    the empty value of their type and setters do nothing.
// Where nothing else is said, int results are codes of engine/codes.h, 0 for success.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/clock.h"
#include "core/currency.h"
#include "core/date.h"
#include "core/file_system.h"
#include "core/message_boxes.h"
#include "core/workstation.h"
#include "store/engine/codebase.h"
#include "store/engine/codes.h"
#include "store/engine/expression.h"
#include "store/engine/journal_state.h"
#include "store/engine/verify.h"

namespace tallwick {

using DataHandle = std::int32_t;   // an open table
using FieldHandle = std::int32_t;  // data handle * 1024 + the field's position
using TagHandle = std::int32_t;    // data handle * 1024 + the tag's position
using RelationHandle = std::int32_t;
using engine::FieldLayout;
using engine::TagLayout;

// What the store stands on. All of it must outlive the store.
struct StorePorts {
  Clock& clock;
  Workstation& workstation;
  FileSystem& file_system;
  MessageBoxes& boxes;
  engine::FileLayer& files;  // engine::SystemFiles() but in tests
};

struct StoreSettings {
  bool large_files = false;        // tables may pass 2 GiB; read by InitializeCodebase
  int max_unique_id_retries = 50;  // appends with a clashing unique ID before giving up
};

struct FieldProperties {
  std::string name;
  char type = 0;  // C N D L M B …
  int width = 0;
  int decimals = 0;
};

struct TagProperties {
  std::string name;
  std::string expression;
  std::string filter;
  int unique = 0;  // 0, 20 (refuse), 25 (leave out silently) or a negative code
  bool descending = false;
  int key_length = 0;
};

// Why a setter refused: a sentence that names the field and says what would fit.
struct FieldProblem {
  std::string field;
  std::string text;
};

// What the generic getter gives: nothing, a text (C, D, M), money (B) or a whole number (N).
using FieldValue = std::variant<std::monostate, std::string, Currency, std::int32_t>;

class clsKVRData {
 public:
  explicit clsKVRData(const StorePorts& ports, StoreSettings settings = {});
  ~clsKVRData();
  clsKVRData(const clsKVRData&) = delete;
  clsKVRData& operator=(const clsKVRData&) = delete;

  // The current record's number after the last operation that moved or appended; 0 for none.
  std::int32_t recordNumber = 0;

  // --- Instance ---

  // Starts the engine and applies its settings; on a running engine applies them again (shared access mode
  // included). False after the message "Initializing Codebase Failed".
  bool InitializeCodebase();
  void FinishCodebase();  // closes every table and ends the engine; every handle is dead afterwards
  void ResetCodebase();   // clears codes and flags; tables stay open
  bool IsStarted() const { return engine_ != nullptr; }
  std::int16_t LastErrorCode() const { return last_error_; }
  std::int16_t OpenErrorCode() const { return open_error_; }  // of the last failed open; 0 after a good one
  const FieldProblem& LastFieldProblem() const { return field_problem_; }
  // What a person can do about a write that failed with the code just now: sentences that begin with why, or
  // "" where the code's own text says all.
  std::string AdviceFor(int code) const;
  // The same for an open or a read that something outside the tables has kept from going on: sentences without
  // the last full stop, or "" for damage and all else.
  static std::string_view StandstillAdvice(int code);
  // Set when the user wants a table rebuilt whose open failed. The opener rebuilds it and clears the flag.
  bool RebuildRequested() const { return rebuild_requested_; }
  void ClearRebuildRequest() { rebuild_requested_ = false; }
  // While set, every open compares the header's record count with the file's length.
  void SetHeaderCheck(bool on) { header_check_ = on; }
  void SetSharedAccess();  // opens are shared again after OpenDatabaseExclusive

  // --- Tables. Names are paths of the ".dbf" ---

  // The data handle, or the engine's code (0 or negative) when the open failed and the user has been told;
  // -61 (in use exclusively) and a declined header repair (-200) end without a failure message.
  DataHandle OpenDatabase(std::string_view name);
  DataHandle OpenDatabaseExclusive(std::string_view name);  // leaves the access mode at exclusive
  DataHandle OpenDatabaseSilent(std::string_view name,
                                bool exclusive);  // no messages, no repair; shared afterwards
  DataHandle OpenDatabaseClone(DataHandle data);  // a second handle with a position of its own
  // For an opener whose table has opened and does not serve: closes it and ends as an open that failed with
  // the code, which is the result. Where a rebuild may mend it the user is asked, with `why` in the place of
  // the engine's text; else telling it is the opener's.
  int RefuseOpened(DataHandle data, int code, std::string_view why);
  std::string AdjustDBName(std::string_view name) const;
  // True when the header's count fits the file; else says so and gives false. Always true while the check is
  // off.
  bool CheckDatabaseHeader(DataHandle data);
  // Asks, then corrects the record count in the header. 0 when it did, or when the count fits after all.
  int FixDatabaseHeader(std::string_view name);
  // Takes a table nobody has open out of the way: its data file gets the other path, its index goes, its memo
  // file stays. 0 or a code, kErrorOpenRefused while somebody has it open.
  int SetTableAside(std::string_view name, std::string_view kept);
  // The same correction without a question, for mending, but that records of zero bytes behind the counted ones
  // are cut off: 0, kErrorDataHeader, or kErrorOpenRefused while
  // somebody has the table open.
  int CorrectRecordCount(std::string_view name);
  bool CheckRecordCount(DataHandle data);  // the same test as the engine makes it, without a message
  int CloseDatabase(DataHandle data);
  int CloseAllDatabases();
  int RemoveDatabase(DataHandle data);  // deletes the table's files; needs exclusive access
  // The first handle of an open table by name (path and extension do not matter); 0 when it is not open.
  DataHandle GetDatabasePointer(std::string_view name);
  // Makes table, index and memo file and opens them. Never replaces a file: -64. No messages.
  DataHandle CreateDatabase(std::string_view name, std::span<const FieldLayout> fields,
                            std::span<const TagLayout> tags);
  int PackDatabase(DataHandle data, const engine::Progress& progress = {});     // needs exclusive access
  int ReindexDatabase(DataHandle data, const engine::Progress& progress = {});  // needs exclusive access
  // Adds what is wrong with an open table (its tags, pages, memos) to `problems`. 0 when it could be
  // examined.
  int VerifyDatabase(DataHandle data, std::vector<engine::TableProblem>* problems,
                     const engine::Progress& progress = {});
  // Sets the next free block of an open table's memo file to the file's end; needs exclusive access.
  int CorrectMemoEnd(DataHandle data);
  // Makes the index of a closed table anew, whatever state the old one is in; needs exclusive access.
  int RebuildIndex(std::string_view name, std::span<const TagLayout> tags,
                   const engine::Progress& progress = {});
  // Looks at the journal of a folder without changing anything.
  engine::JournalFindings ExamineJournal(std::string_view folder) const;
  // Renames a journal that cannot be used, with these files of the folder flushed. 0, or kErrorOpenRefused
  // while anybody has the folder open.
  int SetJournalAside(std::string_view folder, std::string_view name, const std::vector<std::string>& files);
  bool IsDatabaseOpen(DataHandle data) const { return Find(data) != nullptr; }
  std::string DatabaseName(DataHandle data) const;  // full path as a person is shown it; "" when not open
  bool HasIndex(DataHandle data) const;
  // True where the table may be read and not written: writes then end with engine::kErrorReadOnly.
  bool IsReadOnly(DataHandle data) const;

  // Told the table and the record after each append and each write of a record, within the unit of work that
  // may still be rolled back.
  using WriteWatcher = std::function<void(DataHandle data, std::int32_t record)>;
  int WatchWrites(WriteWatcher watcher);  // the number by which it is ended
  void UnwatchWrites(int number) { write_watchers_.erase(number); }

  // --- Units of work. Until one ends no box is shown, and nothing waits for a person: what would have been
  // asked or reported is the code of the operation ---

  int BeginUnit();
  // On failure everything is as it was before. Fails when a table could not be read within the unit: what
  // was written then may rest on records that were not seen.
  int CommitUnit();
  // 0, or why the unit that was committed last could not be brought to the tables. It stands all the same, and
  // is brought there before anybody reads or writes them.
  int UnitWaits() const { return unit_waits_; }
  int RollbackUnit();  // also undoes the outer units
  bool UnitActive() const;

  // --- The company folder as a whole. Folders are in the held form ---

  // Keeps every workstation from changing the folder's tables until ReleaseWriters; what was posted before is
  // in the tables.
  int HoldWriters(std::string_view folder);
  void ReleaseWriters();
  // Takes the folder for this workstation alone, until ReleaseFolder; this program's tables must be closed.
  // engine::kErrorOpenRefused when anybody has one of the tables open whose names match the pattern.
  int TakeFolder(std::string_view folder, std::string_view table_pattern);
  void ReleaseFolder();
  // 0, or engine::kErrorOpenRefused while another workstation has the folder for itself: then `holder` is its
  // name as "FRONTDESK (process 4711)", or "" where it is not known.
  int MayEnter(std::string_view folder, std::string* holder);
  // The path under which the new form of a file is to be written for ReplaceFiles.
  std::string NewFormOf(std::string_view path) const;
  // Replaces files (their new forms stand beside them) and removes others, all or none through any failure.
  // Needs the folder taken and its tables closed.
  int ReplaceFiles(std::span<const std::string> replaced, std::span<const std::string> removed);
  // True when the last ReplaceFiles failed after the new files had come to count: the next to open a table of
  // the folder finishes it.
  bool ReplaceUnfinished() const;
  bool IsInUse(std::string_view name);  // by anyone, this program included
  // Copies a file in the place of `to`, flushed. 0, or the code of what failed; `to` is as it was then. The
  // progress is asked whether to go on.
  int CopyFile(std::string_view from, std::string_view to, const engine::Progress& progress = {});

  // --- Tags and navigation ---

  bool SelectTag(DataHandle data,
                 std::string_view tag);  // an unknown name is reported; "" selects record order
  bool SelectTagByPointer(DataHandle data, TagHandle tag);            // 0 selects record order
  TagHandle SelectTagPointer(DataHandle data, std::string_view tag);  // selects, and gives the tag's handle
  TagHandle GetTagPointer(DataHandle data, std::string_view tag);  // 0 without a message when there is none
  TagHandle GetCurrentTagPointer(DataHandle data) const;           // 0 in record order
  bool TagExist(DataHandle data, std::string_view tag);
  int SetTagUniqueContinue(DataHandle data, std::string_view tag, bool on);  // on: mode 25, off: mode 20
  std::vector<std::string> TagNames(DataHandle data) const;                  // in the order of creation
  std::optional<TagProperties> GetTagProperties(DataHandle data, std::string_view tag);

  // Seeks: 0 on the record, 2 on the next greater key, 3 behind the last. A key may be shorter than the
  // tag's: it is compared on its length. The "Next" forms find the first record of the key when the current
  // one has another.
  int SeekDatabase(DataHandle data, std::string_view key);
  int SeekDatabaseByPointer(DataHandle data, TagHandle tag, std::string_view key);  // selects the tag
  int SeekDatabaseNext(DataHandle data, std::string_view key);
  int SeekDatabaseNextByPointer(DataHandle data, TagHandle tag, std::string_view key);
  int SeekDatabaseNumber(DataHandle data, double key);
  int SeekDatabaseNumberNext(DataHandle data, double key);
  int FindDatabaseNext(DataHandle data, std::string_view key);
  int FindDatabaseNextN(DataHandle data, std::string_view key,
                        std::size_t length);  // the key's first characters
  int FindDatabaseDateNext(DataHandle data, const Date& date);
  int PadSearch(DataHandle data, std::string_view key);  // the key blank-padded to the tag's length
  int PadSearchByPointer(DataHandle data, TagHandle tag, std::string_view key);

  // Codes: 0 on a record, 3 behind the last, 4 before the first.
  int TopDatabase(DataHandle data);
  int BottomDatabase(DataHandle data);
  // Says that a table could not be read on, and what helps; at the end of a unit that is under way. Whoever
  // walks must not take damage for the end.
  void TellUnreadable(DataHandle data, int code);
  // True once a table was told to be unreadable.
  bool HasToldUnreadable() const { return told_unreadable_; }
  int SkipDatabase(DataHandle data, std::int64_t count = 1);
  int GoToRecordNo(DataHandle data, std::int32_t record);
  std::int32_t RecordCount(DataHandle data);  // deleted ones included; 0 when not open
  std::int32_t CurrentRecord(DataHandle data) const;
  bool IsRecordDeleted(DataHandle data) const;
  int NumberFields(DataHandle data) const;
  // While on, records are read in blocks, for walks over many; TopDatabase, BottomDatabase and RefreshRecord
  // read anew.
  void SetReadAhead(DataHandle data, bool on);
  std::string GetFirstTagValue(DataHandle data, std::string_view tag);
  std::string GetLastTagValue(DataHandle data, std::string_view tag);

  // --- Records ---

  int AddRecordStart(DataHandle data);
  // Appends, waiting for locks. `unique_id_field`: a whole-number field under a unique tag, raised while it
  // clashes.
  int AddRecordFinish(DataHandle data, std::string_view unique_id_field = {});
  int AddRecordFinishSilent(DataHandle data, std::string_view unique_id_field = {});
  int DeleteRecord(DataHandle data);  // marks the current record; WriteTheRecord makes it so
  int RecallRecord(DataHandle data);
  bool LockTheRecord(DataHandle data, bool no_prompt = false);
  int UnlockTheRecord(DataHandle data);  // writes a changed record first
  int UnlockTheRecordSilent(DataHandle data);
  int RemoveAllLocks();
  int WriteTheRecord(DataHandle data);
  int SetChangedFlag(DataHandle data, bool changed);
  int RefreshRecord(DataHandle data);  // reads the current record from disk again
  // The buffer as it will stand in the file, deletion mark first; empty when not open.
  std::span<const std::uint8_t> RecordBytes(DataHandle data) const;
  // The same, and behind it the records that follow it, as many as a walk with read-ahead has at hand: whole
  // records, one after the other. SkipDatabase by their number goes on behind them.
  std::span<const std::uint8_t> RecordRun(DataHandle data) const;
  void AddDatabaseUIDErrorMsg(DataHandle data, int code, std::int32_t unique_id, int retries);

  // --- Fields ---

  bool FieldExist(DataHandle data, std::string_view field);              // reports an unknown name
  FieldHandle GetFieldPointer(DataHandle data, std::string_view field);  // reports an unknown name; 0 then
  FieldHandle FindField(DataHandle data, std::string_view field);        // the same without a message
  std::optional<FieldProperties> GetFieldProperties(DataHandle data, std::string_view field);
  std::optional<FieldProperties> GetFieldPropertiesByPointer(DataHandle data, FieldHandle field) const;
  char GetFieldTypeByPointer(DataHandle data, FieldHandle field) const;  // 0 for none
  std::vector<FieldProperties> FieldList(DataHandle data) const;

  std::string GetStringFieldValue(DataHandle data, std::string_view field);     // trimmed on both sides
  std::string GetStringFieldRawValue(DataHandle data, std::string_view field);  // full width
  std::string GetDateFieldValue(DataHandle data, std::string_view field);       // "mm/dd/ccyy" or ""
  std::string GetDateFieldRawValue(DataHandle data, std::string_view field);    // 8 characters
  bool GetBooleanFieldValue(DataHandle data, std::string_view field);           // "T" or "Y"
  double GetNumberFieldValue(DataHandle data, std::string_view field);
  std::string GetNumberFieldRawValue(DataHandle data,
                                     std::string_view field);  // the digits as stored, full width
  double GetDoubleFieldValue(DataHandle data, std::string_view field);
  Currency GetCurrencyFieldValue(DataHandle data, std::string_view field);  // exact
  std::string GetMemoFieldValue(DataHandle data, std::string_view field);

  std::string GetStringFieldValueByPointer(DataHandle data, FieldHandle field);
  std::string GetStringFieldRawValueByPointer(DataHandle data, FieldHandle field);
  std::string GetDateFieldValueByPointer(DataHandle data, FieldHandle field);
  std::string GetDateFieldRawValueByPointer(DataHandle data, FieldHandle field);
  Date GetDateByPointer(DataHandle data, FieldHandle field);  // empty for a blank or impossible date
  bool GetBooleanFieldValueByPointer(DataHandle data, FieldHandle field);
  double GetNumberFieldValueByPointer(DataHandle data, FieldHandle field);
  std::string GetNumberFieldRawValueByPointer(DataHandle data, FieldHandle field);
  std::int64_t GetIntegerByPointer(DataHandle data, FieldHandle field);  // decimals dropped
  double GetDoubleFieldValueByPointer(DataHandle data, FieldHandle field);
  Currency GetCurrencyFieldValueByPointer(DataHandle data, FieldHandle field);
  std::string GetMemoFieldValueByPointer(DataHandle data, FieldHandle field);
  FieldValue GetFieldValueByPointer(DataHandle data, FieldHandle field);

  int SetStringFieldValue(DataHandle data, std::string_view field, std::string_view value);
  int SetDateFieldValue(DataHandle data, std::string_view field, std::string_view display_date);
  int SetBooleanFieldValue(DataHandle data, std::string_view field, bool value);
  int SetNumberFieldValue(DataHandle data, std::string_view field, std::int32_t value);
  int SetDoubleFieldValue(DataHandle data, std::string_view field, double value);
  int SetCurrencyFieldValue(DataHandle data, std::string_view field, Currency value);
  int SetMemoFieldValue(DataHandle data, std::string_view field, std::string_view value);
  int SetMemoFieldValueBinary(DataHandle data, std::string_view field, std::string_view bytes);

  int SetStringFieldValueByPointer(DataHandle data, FieldHandle field, std::string_view value);
  int SetDateFieldValueByPointer(DataHandle data, FieldHandle field, std::string_view display_date);
  int SetDateByPointer(DataHandle data, FieldHandle field, const Date& value);
  int SetBooleanFieldValueByPointer(DataHandle data, FieldHandle field, bool value);
  int SetNumberFieldValueByPointer(DataHandle data, FieldHandle field, std::int32_t value);
  int SetDoubleFieldValueByPointer(DataHandle data, FieldHandle field, double value);
  int SetCurrencyFieldValueByPointer(DataHandle data, FieldHandle field, Currency value);
  int SetMemoFieldValueByPointer(DataHandle data, FieldHandle field, std::string_view value);
  int SetMemoFieldValueBinaryByPointer(DataHandle data, FieldHandle field, std::string_view bytes);
  // Sets a field of any type from a text as a person writes it: a plain decimal, "mm/dd/ccyy" or
  // "ccyy-mm-dd", T/F/Y/N.
  int SetFieldTextByPointer(DataHandle data, FieldHandle field, std::string_view text);

  // --- Relations: a query over one table, with records of other tables found by a key of the master record
  // ---

  RelationHandle RelationInitialize(DataHandle master);  // 0 when the table is not open
  // The slave is positioned by seeking the master's expression in the slave's tag.
  int RelationCreateSlave(RelationHandle relation, DataHandle slave, std::string_view expression,
                          std::string_view tag);
  int RelationQuerySet(RelationHandle relation,
                       std::string_view expression);                // a logical expression; "" takes all
  int RelationSort(RelationHandle relation, std::string_view tag);  // walk in this tag of the master
  int RelationTop(RelationHandle relation);                         // 0 on a record, 3 none
  int RelationSkip(RelationHandle relation);
  void RelationFree(RelationHandle relation);

 private:
  struct OpenTable {
    engine::Data4* data = nullptr;
    std::vector<engine::Field4*> fields;  // by position - 1
    std::vector<engine::Tag4*> tags;      // in the order of creation
  };
  struct RelationSlave {
    DataHandle data = 0;
    TagHandle tag = 0;
    std::unique_ptr<const engine::Expression> key;
  };
  struct Relation {
    DataHandle master = 0;
    TagHandle order = 0;
    std::unique_ptr<const engine::Expression> query;
    std::vector<RelationSlave> slaves;
  };

  OpenTable* Find(DataHandle data) const;
  engine::Field4* FindField4(DataHandle data, FieldHandle field) const;
  engine::Tag4* FindTag4(DataHandle data, TagHandle tag) const;
  TagHandle HandleOf(DataHandle data, const engine::Tag4* tag) const;
  DataHandle Keep(engine::Data4* data);
  void LookUpParts(OpenTable& table);
  void Forget(DataHandle data);
  int Finish(int result);  // copies and clears the engine's error code
  int NotOpen();           // the result of an operation on a handle that is none
  int Moved(const OpenTable& table, int result);

  DataHandle OpenWithMessages(std::string_view name, std::string_view operation);
  DataHandle OpenOnce(std::string_view name);
  bool CountFitsAtRest(std::string_view name);
  void ReportOpenFailure(std::string_view name, std::string_view operation, int code);
  void OfferRebuild(std::string_view failure, std::string_view why, int code);
  std::string TableFile(std::string_view name) const;  // the ".dbf" in the platform's form
  std::string ShownName(std::string_view name) const;  // a table name as a person is shown it

  int FinishAppend(DataHandle data, std::string_view unique_id_field, bool silent);
  int AppendWithRetries(DataHandle data, FieldHandle unique_id, bool silent, bool& reported);
  int RetryWhileLocked(DataHandle data, int (*step)(engine::Data4&), bool silent);
  void NoteLocked(const OpenTable& table, int code);
  void ReportUpdateFailure(DataHandle data, int code);
  std::string TagEndValue(DataHandle data, std::string_view tag, bool last);

  int Refuse(const engine::Field4& field, std::string text);
  int Assigned(const engine::Field4& field, int code, std::string_view value);
  std::optional<std::string> Encoded(const engine::Field4& field, std::string_view value);
  int AssignText(engine::Field4& field, std::string_view bytes);

  std::unique_ptr<const engine::Expression> ParseFor(const OpenTable& table, std::string_view text) const;
  Relation* FindRelation(RelationHandle relation);
  int RelationSettle(Relation& relation, int code);

  void TellWritten(DataHandle data);
  void ShowUnreadable(const std::string& table, int code);
  void ShowUnreadableOfUnit();

  StorePorts ports_;
  StoreSettings settings_;
  std::map<int, WriteWatcher> write_watchers_;  // by number
  std::unique_ptr<engine::Code4> engine_;
  std::vector<std::unique_ptr<OpenTable>> tables_;  // by handle - 1; null when closed
  std::deque<DataHandle> free_handles_;             // oldest first, so that a dead handle stays dead for long
  std::map<RelationHandle, Relation> relations_;
  RelationHandle next_relation_ = 1;
  FieldProblem field_problem_;
  std::int16_t last_error_ = 0;
  std::int16_t open_error_ = 0;
  int unit_waits_ = 0;
  std::string locked_table_;  // the last that was met locked; "" since a unit began
  bool told_unreadable_ = false;
  std::deque<std::pair<std::string, int>> unreadable_in_unit_;  // table and code, to be told at its end
  bool rebuild_requested_ = false;
  bool header_check_ = false;
};

}  // namespace tallwick
