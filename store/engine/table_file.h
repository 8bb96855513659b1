// One table of an engine instance: its data, index and memo files, shared by every handle on it, and who
// locked what.
//
// Locks (beyond the data, where the other programs on the share expect them):
//   record n           with a CDX 0x7FFFFFFE - n, 1 byte
//                      without 0x40000000 + its place in the file, its length
//   whole file         with a CDX 0x7FFFFFFE - 0x07FFFFFF, 0x07FFFFFF bytes
//                      without 0x40000000 + 1, 0x3FFFFFFD bytes
//   header and append  with a CDX 0x7FFFFFFE, without 0x40000000, 1 byte
//   presence           0x7FFFFFFF, 1 byte: shared while the table is open, exclusive for exclusive access
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "store/engine/codebase.h"
#include "store/engine/index_file.h"
#include "store/engine/journal.h"
#include "store/engine/lock_notes.h"
#include "store/engine/memo_file.h"
#include "store/engine/staged_file.h"
#include "store/engine/table_header.h"

namespace tallwick::engine {

// Greatest record number: beyond it record locks would leave their range.
inline constexpr std::uint32_t kMaxRecords = 0x07FFFFFE;
inline constexpr std::int64_t kSmallFileLimit = 0x7FFFFFFF;
inline constexpr std::int64_t kLargeFileLimit = std::int64_t{1} << 40;

class TableFile {
 public:
  // Opens the files of a table. `path` is the data file's, in the platform's form. With `without_index` the
  // index is neither opened nor expected. Null with *code set on failure.
  struct Access {
    bool exclusive = false;
    bool large = false;
    bool without_index = false;
  };
  static std::unique_ptr<TableFile> Open(const EngineSetup& setup, const std::string& path, Access access,
                                         int* code);
  ~TableFile();

  const std::string& Path() const { return path_; }
  const std::string& IndexPath() const { return index_path_; }
  const std::string& MemoPath() const { return memo_path_; }
  std::string Folder() const;
  // Another file of the table: same base name, another extension, found whatever its case.
  static std::string SiblingPath(const FileSystem& paths, const std::string& path,
                                 std::string_view extension);

  const TableHeader& Header() const { return header_; }
  bool Exclusive() const { return access_.exclusive; }
  std::int64_t SizeLimit() const { return access_.large ? kLargeFileLimit : kSmallFileLimit; }
  IndexFile* Index() { return index_.get(); }
  const IndexFile* Index() const { return index_.get(); }
  MemoFile* Memo() { return memo_.get(); }
  StagedFile& Data() { return *data_; }
  // True where one of its files may not be written: then nothing in it can be locked or changed.
  bool IsReadOnly() const { return read_only_; }

  // The record count of the header as it stands now, staged changes included; negative codes on failure.
  std::int64_t RecordCount();
  // True when the table has the record, which it then keeps while it is open.
  bool Holds(std::uint32_t record, int* rc);
  // The folder's journal, which tells whether a unit was brought to the files while they were read. It must
  // outlive the table. Without one, reads take what they find.
  void Heed(Journal* journal) { journal_ = journal; }
  // Reads `count` records from `first` on into `buffer`; the number read, which is less at the end. All of
  // them are as of one moment: another workstation's unit is in all of them or in none.
  std::int64_t ReadRecords(std::uint32_t first, std::uint32_t count, std::uint8_t* buffer);
  // The memo at a block, whole. kSuccess or an error.
  int ReadMemo(std::uint32_t block, std::string* text);
  void StageRecord(std::uint32_t record, std::span<const std::uint8_t> bytes);
  // Stages a record behind the last one, the end mark and the new count.
  int StageAppend(std::span<const std::uint8_t> bytes, const Date& today, std::uint32_t* record);
  // kSuccess, or kErrorDataHeader when the header's count does not fit the file's length.
  int CheckCount();

  // --- Locks; an owner is a handle ---
  int LockRecord(const void* owner, std::uint32_t record, int attempts);
  int LockWhole(const void* owner, int attempts);
  bool Owns(const void* owner, std::uint32_t record) const;
  void UnlockRecord(const void* owner, std::uint32_t record);
  void UnlockAll(const void* owner);
  // Says in the folder's notes that this workstation has locked a record (0 = the whole table) until further
  // notice; the note goes with the lock.
  void NoteLock(std::uint32_t record) { notes_.Note(record); }
  // Who has noted such a lock; "" where that is not known.
  std::string LockHolder(std::uint32_t record) { return notes_.Holder(record); }
  // What an owner holds becomes the table's own, until the unit ends.
  void TakeOverLocks(const void* owner);
  // The header lock; held until the unit of work ends.
  int LockAppend(int attempts);
  void UnlockAppend();

  // --- The unit of work ---
  bool IsDirty() const;
  void Discard();

  // After the index file was replaced, and after all files were: then with the opened new table, whose
  // presence lock is kept.
  int ReopenIndex();
  int Adopt(std::unique_ptr<TableFile> fresh);

  int handles = 0;
  // Its files were replaced and could not be opened again: nothing may be written any more,
  // and its handle has no tags.
  bool lost = false;

 private:
  TableFile(const EngineSetup& setup, const std::string& path, Access access)
      : setup_(setup), path_(path), access_(access), notes_(setup, path) {}
  int OpenData();
  int OpenIndex();
  int OpenMemo();
  int TakePresence();
  std::int64_t RecordOffset(std::uint32_t record) const;
  std::int64_t RecordLockAt(std::uint32_t record) const;
  std::int64_t AppendLockAt() const;
  std::int64_t WholeLockAt() const;
  std::int64_t WholeLockLength() const;
  // A byte of the whole-file lock that is no record's: so far a table does not reach.
  std::int64_t WholeGuardAt() const;
  // Repeats a read until no unit has come in between; the read's result, or a negative code.
  template <class Reading>
  std::int64_t ReadUndisturbed(Reading reading);
  int Try(std::int64_t offset, std::int64_t length, int attempts);

  EngineSetup setup_;
  std::string path_;
  std::string index_path_;
  std::string memo_path_;
  Access access_;
  TableHeader header_;
  std::unique_ptr<StagedFile> data_;
  std::unique_ptr<IndexFile> index_;
  std::unique_ptr<MemoFile> memo_;
  std::map<std::uint32_t, const void*> record_owners_;
  const void* whole_owner_ = nullptr;
  LockNotes notes_;
  bool append_locked_ = false;
  bool guards_whole_ = false;  // while appending: nobody else can lock the whole file
  bool read_only_ = false;
  Journal* journal_ = nullptr;
  std::uint32_t settled_count_ = 0;  // records known to be in the file for good
};

}  // namespace tallwick::engine
