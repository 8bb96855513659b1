// What all tables share: making, opening, checking, rebuilding and walking one table of a company folder.
// A table object holds at most one open handle and closes it when it goes.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/file_system.h"
#include "core/message_boxes.h"
#include "store/clsKVRData.h"
#include "tables/layout.h"
#include "tables/table_lack.h"

namespace tallwick {

// Where the tables of a company live. What it refers to must outlive every table.
struct TableHome {
  clsKVRData& data;
  FileSystem& files;
  MessageBoxes& boxes;
  std::string folder;  // the company data path
  // Told the name of a per-bank table that was missing and has been made while it was opened. May be empty.
  std::function<void(std::string_view table)> made_on_open = {};
  // Asked about a missing table before it is made: what speaks against making it, behind "is missing, but ",
  // or "". May be empty.
  std::function<std::string(std::string_view table)> why_lost = {};
};

inline constexpr std::uint64_t kEmptyMemoBytes = 512;  // a memo file's header; a longer one holds texts

class TableBase {
 public:
  TableBase(const TableHome& home, const TableLayout& layout);
  virtual ~TableBase();
  TableBase(const TableBase&) = delete;
  TableBase& operator=(const TableBase&) = delete;

  const TableLayout& Layout() const { return layout_; }
  // "ESCROW_CHECKS_FNB" or "ESCROW_BANKS"; for a per-bank table the name after a Create, Open or Rebuild with
  // its code.
  const std::string& Name() const { return name_; }
  std::string Path() const { return PathWith(".DBF"); }

  // Bank codes may come blank-padded; company-wide tables take none. A code that cannot be part of a file
  // name is refused with a message.
  bool Exists(std::string_view bank_code = {});
  // Makes the empty table; 0, or the engine's code after a message. Leaves it closed.
  int Create(std::string_view bank_code = {});
  // The same for a table that is missing; nothing to tell where another workstation has just made it.
  int CreateMissing(std::string_view bank_code = {});
  // True when nothing speaks for a missing table's having been lost, or the user wants an empty one all the
  // same.
  bool MayMake();
  // What speaks against it, as TableHome::why_lost says.
  std::string WhyLost() const { return home_.why_lost ? home_.why_lost(name_) : std::string(); }
  // Opens the table shared and looks up its fields. A per-bank table that is missing is made first, after a
  // question when it seems to be lost. When the user asks for a rebuild of a damaged one, or of one that
  // lacks a tag, it is rebuilt; one that lacks a field is refused, and so is a damaged one of the suite's.
  // The handle, 0 or a negative code after a message.
  DataHandle Open(std::string_view bank_code = {});
  // The same for this workstation alone; a missing table is not made.
  DataHandle OpenExclusive(std::string_view bank_code = {});
  // The same without a word, without making or mending anything.
  DataHandle OpenQuietly(std::string_view bank_code, bool exclusive);
  // The same whatever the table lacks, for work that looks at that, or mends it.
  DataHandle OpenAsItIs(std::string_view bank_code, bool exclusive);
  // What the last open found missing; nothing after OpenAsItIs.
  const TableLack& Lack() const { return lack_; }
  // Why the last open failed, which gave the code: what the table lacks, or the engine's text.
  std::string WhyNotOpen(int code) const {
    return lack_ ? lack_.text : std::string(engine::error4text(code));
  }
  void Close();
  bool IsOpen() const { return handle_ > 0; }
  DataHandle Handle() const { return handle_; }
  clsKVRData& Data() const { return home_.data; }
  // Shows what was found wrong in the table's records.
  void TellDamage(std::string_view text);

  // Whether the open table's fields and tags are those of the layout.
  LayoutState CheckVersion();
  // The first of the layout's tags that the open table's index makes otherwise: of other keys or records, or
  // without their uniqueness. "" for none; a tag that it lacks is none.
  std::string OtherTag() const;
  // Packs the closed table into new files with new indexes, the old table kept as ".sav" until the new one is
  // proven, and reports "Pack Result Code: " with the code, which is also the result. A damaged or missing
  // index is mended.
  int Rebuild(std::string_view bank_code = {}, const engine::Progress& progress = {});
  // The same without the report.
  int RebuildQuietly(std::string_view bank_code, const engine::Progress& progress);

  // Navigation in a tag's order; "" is record order. True on a record.
  bool Top(std::string_view tag);
  bool Bottom(std::string_view tag);
  bool Skip(std::int64_t count = 1);
  bool GoTo(std::int32_t record);
  // Whether the last step could not read: then that it reached no record does not mean that there is none.
  bool ReadFailed() const { return failed_; }
  // Calls `visit` on each live record in record order, which no index can mislead, until it gives false. True
  // when the walk has come to the table's end: a record that cannot be read ends it too, after a message.
  template <class Visit>
  bool ForEachLive(Visit visit) {
    if (!IsOpen()) return false;
    for (bool on = Top(""); on; on = Skip())
      if (!home_.data.IsRecordDeleted(handle_) && !visit()) return false;
    return !failed_;
  }
  // On the first record whose key begins with `key`; the key is upper-cased as the tags are. True when found.
  bool Seek(std::string_view tag, std::string_view key);
  // On the next record with this key, in the selected tag. A record that does not agree with its tag leads
  // the seek back to the first one; the walk ends there, so that it ends at all.
  bool SeekNext(std::string_view key);
  std::int32_t RecordNumber() const { return home_.data.CurrentRecord(handle_); }
  std::int32_t RecordCount() const { return home_.data.RecordCount(handle_); }  // deleted ones included

  // The kept handle of a field, for passes that decode only what they need; 0 when the table lacks it.
  FieldHandle Field(std::string_view name) const;

  // Locks the current record and reads it again, so that what follows works on what is in the table now. 0;
  // engine::kLocked when another workstation has it and the user gave up, or was not asked: with `no_prompt`,
  // and within a unit of work; engine::kNoRecord when it has been deleted.
  int Lock(bool no_prompt = false);
  void Unlock() { home_.data.UnlockTheRecord(handle_); }
  // Locks, deletes and unlocks the current record. Codes as Lock.
  int Delete();

 protected:
  // Called when an open ended with the header damaged and its repair declined. True when the open is worth
  // another try.
  virtual bool OfferAfterDamagedHeader() { return false; }

  const TableHome& Home() const { return home_; }
  std::string PathWith(std::string_view extension) const;
  int CreateNamed();  // Create for the name in use
  const std::vector<FieldHandle>& Fields() const { return fields_; }
  // True when a step has reached a record. Damage must not pass for the end of a table: it is told, once.
  bool Reached(int code);

 private:
  bool UseBank(std::string_view bank_code);  // false after a message
  int MakeEmpty();                           // 0 or a code, without a message
  int MakeEmptyOrFind();                     // 0 too where another workstation was quicker
  int MakeMissing();
  bool HasTexts() const;  // a memo file with texts is there
  void ReportNotCreated(int code);
  DataHandle OpenTelling(bool exclusive);
  DataHandle OpenWhole(bool exclusive);
  TableLack LackOf(DataHandle handle) const;  // of an open table, or of one that did not open with the code
  DataHandle Settle(DataHandle handle);
  void ReportOpenFailed(int code);

  int RebuildOnDisk(const engine::Progress& progress);
  int PackAndProve(DataHandle data, const engine::Progress& progress);
  DataHandle OpenMended();
  DataHandle OpenWithIndex(std::span<const TagLayout> tags);  // built anew
  bool SetFullerCopyAside();
  int KeepOld(const engine::Progress& progress);
  void DropOld();
  void RestoreOld();
  bool IsProven(DataHandle data, std::int32_t live_records);
  std::int32_t CountLive(DataHandle data);

  TableHome home_;
  const TableLayout& layout_;
  std::string name_;
  DataHandle handle_ = 0;
  std::int32_t walk_start_ = 0;  // the record that Seek found; 0 = none
  bool failed_ = false;          // the last step could not read
  bool told_unreadable_ = false;
  TableLack lack_;
  std::vector<FieldHandle> fields_;  // in the layout's order; 0 where the table lacks one
};

}  // namespace tallwick
