// The engine's operations: tables (DBF), compound indexes (CDX) and memos (FPT) behind one set of functions.
//
// A Code4 is one engine instance: its settings, its error code and its open tables. A Data4 is one handle on
// a table: a record buffer, a position and a selected tag of its own. Handles on the same table within one
// instance share the files, the caches and the unit of work; their locks exclude each other.
//
// Failures set the instance's error code (code4errorCode) and are also returned. Texts in records are
// Windows-1252. Nothing here throws, and nothing here speaks to the user.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/clock.h"
#include "core/currency.h"
#include "core/file_system.h"
#include "core/workstation.h"
#include "store/engine/codes.h"
#include "store/engine/file.h"

namespace tallwick::engine {
class Code4;
class Data4;
struct Field4;
struct FolderChange;
class Tag4;
}  // namespace tallwick::engine

// An instance is known only by name here; its owner ends it all the same (as code4initUndo does).
template <>
struct std::default_delete<tallwick::engine::Code4> {
  void operator()(tallwick::engine::Code4* code) const;
};

namespace tallwick::engine {

// What an instance stands on. All of it must outlive the instance.
struct EngineSetup {
  Clock& clock;              // the date of last update
  Workstation& workstation;  // named in the lock file
  const FileSystem& paths;   // finds a file whatever the case of its letters
  FileLayer& files;
};

// A field as it is to be created: type C N D L M, width and decimals as in the table's descriptor.
struct FieldLayout {
  std::string_view name;
  char type;
  int width;
  int decimals = 0;
};

// A tag as it is to be created. An empty filter takes every record.
struct TagLayout {
  std::string_view name;
  std::string_view expression;
  std::string_view filter;
  bool unique = false;
  bool descending = false;
};

// --- Instance ---

std::unique_ptr<Code4> code4initVB(const EngineSetup& setup);
int code4close(Code4& code);     // closes every table; changed records are written
int code4initUndo(Code4& code);  // ends the instance; every handle is dead afterwards
// Sets the error code and returns the previous one; -5 only reads.
int code4errorCode(Code4& code, int value);
int error4set(Code4& code, int value);             // as code4errorCode
void code4errOff(Code4& code, int off);            // kept for callers: the engine never shows anything
int code4lockAttempts(Code4& code, int attempts);  // tries per lock call, at least 1; the previous value
int code4accessMode(Code4& code, int mode);        // 0 shared, 1 exclusive, for tables opened from now on
int code4errDefaultUnique(Code4& code,
                          int mode);   // mode of unique tags opened from now on: 20, 25 or a negative code
int code4safety(Code4& code, int on);  // 1: d4create refuses to replace a file
// Kept for callers: locks always stay until they are released, as mode 0 says. The previous mode.
int code4unlockAutoSetCB(Code4& code, int mode);
// Kept for callers: dates are stored as "CCYYMMDD" whatever is set.
void code4dateFormatSet(Code4& code, std::string_view format);
void code4largeOn(Code4& code);                         // tables may pass 2 GiB
int code4unlock(Code4& code);                           // releases every record and file lock of every handle
Data4* code4data(Code4& code, std::string_view alias);  // an open table by alias; nullptr when none
// Who held the lock that the last kLocked was about, as "FRONTDESK (process 4711)"; "" where that is not
// known: the lock scheme does not tell, and only our own workstations leave notes, and only of locks that
// stay.
std::string code4lockUserId(Code4& code);

// --- Units of work: what happens between begin and commit reaches the files together or not at all ---

int code4unitBegin(Code4& code);     // may be nested; only the outermost commit writes
int code4unitCommit(Code4& code);    // on failure everything is as it was before the begin
int code4unitRollback(Code4& code);  // also undoes the outer units
bool code4unitActive(const Code4& code);

// --- A whole folder (paths in the platform's form) ---

// Keeps every workstation from writing to the folder's tables, which are all applied and flushed: a copy made
// meanwhile has no unit half done; whoever waits for it too long is told kErrorCopying. The journal is made
// where it is missing. kLocked when a writer is at work for too long. No unit may be begun meanwhile.
int code4holdWriters(Code4& code, const std::string& folder);
void code4releaseWriters(Code4& code);
// Takes the folder for this instance alone: until it is released nobody else can open a table there.
// kErrorOpenRefused when one of `tables` is open, here or elsewhere, or another workstation has the folder.
int code4takeFolder(Code4& code, const std::string& folder, const std::vector<std::string>& tables);
void code4releaseFolder(Code4& code);
// kErrorOpenRefused while another workstation has the folder for itself; code4lockUserId says who, where that
// is known.
int code4mayEnter(Code4& code, const std::string& folder);
// Replaces and removes files of the folder that was taken, all or none through any failure (see
// FolderGate::Replace), with nothing left in the journal that could be applied to them. None of their tables
// may be open.
int code4replaceFiles(Code4& code, const FolderChange& change);
// True when the last replacement counts but could not be finished: it is, when the next comes to the folder.
bool code4replaceUnfinished(const Code4& code);
// kSuccess when nobody has the table open, or it does not exist; else kErrorOpenRefused.
int d4inUse(Code4& code, std::string_view path);

// --- Tables ---

// Opens a table by path (".dbf" may be left out). nullptr with the error code set on failure.
Data4* d4open(Code4& code, std::string_view path);
// A second handle on an open table, with a position of its own.
Data4* d4openClone(Data4& data);
// Makes table, index (where there are tags) and memo file (where a field has type M), and opens them.
Data4* d4create(Code4& code, std::string_view path, std::span<const FieldLayout> fields,
                std::span<const TagLayout> tag_layouts);
int d4close(Data4* data);   // writes a changed record, releases the handle's locks
int d4remove(Data4* data);  // closes and deletes the table's files; needs exclusive access
// Gives a data file that nobody has open, whatever is wrong with it, another path, and removes its index.
// kErrorOpenRefused while somebody has it open.
int d4setAside(Code4& code, std::string_view path, const std::string& kept);
// Removes deleted records and rebuilds index and memo file. `progress` (may be empty) is called with records
// done and total; false stops it, and everything stays as it was. Needs exclusive access.
using Progress = std::function<bool(std::uint32_t done, std::uint32_t total)>;
int d4pack(Data4& data, const Progress& progress = {});
int d4reindex(Data4& data, const Progress& progress = {});
// Makes the index of a table anew from tag layouts, whatever state the old index file is in (it need not
// exist). The table must not be open. For mending; takes exclusive access.
int d4rebuildIndex(Code4& code, std::string_view path, std::span<const TagLayout> tag_layouts,
                   const Progress& progress = {});
// The header's record count against the file's length: kSuccess or kErrorDataHeader.
int d4headerCheck(Data4& data);
std::string d4fileName(const Data4& data);  // full path in the platform's form
std::string d4alias(const Data4& data);     // base name of the file, upper case
bool d4exclusive(const Data4& data);
// True where one of the table's files may not be written: locks and changes then end with kErrorReadOnly.
bool d4readOnly(const Data4& data);
int d4numFields(const Data4& data);
std::uint32_t d4recCountDo(Data4& data);  // records in the table, deleted ones included
int d4recordLength(const Data4& data);
bool d4hasIndex(const Data4& data);

// --- Records ---

int d4appendStart(Data4& data);  // a new blank record in the buffer; nothing is written yet
void d4blank(Data4& data);
int d4append(Data4& data);             // kSuccess, kUnique, kLocked or an error
int d4changed(Data4& data, int flag);  // 1 or 0 marks the buffer; -1 only reads; the previous mark
void d4delete(Data4& data);            // marks the buffer deleted and changed
void d4recall(Data4& data);
bool d4deleted(const Data4& data);
int d4flush(Data4& data);  // writes the buffer when it is changed
int d4lockVB(Data4& data, std::uint32_t record);
int d4lockFile(Data4& data);
int d4unlock(Data4& data);                    // writes a changed record, releases the handle's locks
int d4refreshRecord(Data4& data);             // reads the current record from disk again
std::uint32_t d4recNoLow(const Data4& data);  // current record from 1; 0 none; RecCount + 1 at the end
int d4goLow(Data4& data, std::uint32_t record);
std::span<const std::uint8_t> d4record(const Data4& data);  // the buffer, deletion mark first
// The current record and, while reading ahead, those that were read with it and stand behind it.
std::span<const std::uint8_t> d4recordRun(const Data4& data);
bool d4eof(const Data4& data);
bool d4bof(const Data4& data);

// --- Navigation in the selected tag's order, or by record number when none is selected ---

Tag4* d4tag(Data4& data, std::string_view name);  // nullptr when there is none
void d4tagSelect(Data4& data, Tag4* tag);         // nullptr = record order
Tag4* d4tagSelected(const Data4& data);
Tag4* d4tagNext(Data4& data, Tag4* tag);  // nullptr gives the first; in the order of creation
int d4top(Data4& data);
int d4bottom(Data4& data);
int d4skip(Data4& data, std::int64_t count);  // kSuccess, kEof or kBof
// Seeks give kSuccess (on the record), kAfter (on the next greater), kEof, or an error. A text key may be
// shorter than the tag's: then it is compared on its length. On a date tag the text is "CCYYMMDD", on a
// numeric tag a decimal.
int d4seek(Data4& data, std::string_view key);
int d4seekN(Data4& data, std::string_view key, std::size_t length);
int d4seekDouble(Data4& data, double key);
// On to the next record with this key; when the current one has another key, as the seek itself.
int d4seekNext(Data4& data, std::string_view key);
int d4seekNextN(Data4& data, std::string_view key, std::size_t length);
int d4seekNextDouble(Data4& data, double key);

// While on, records are read in blocks: for walks over many records, which then see each record as of the
// moment its block was read. d4top, d4bottom and d4refreshRecord read anew.
void d4readAhead(Data4& data, bool on);

std::string t4alias(const Tag4& tag);
std::string t4exprCB(const Tag4& tag);
std::string t4filterCB(const Tag4& tag);
int t4unique(const Tag4& tag);  // 0, 20, 25 or a negative code
int t4uniqueSetVB(Tag4& tag, int mode);
bool t4descending(const Tag4& tag);
int t4keyLength(const Tag4& tag);

// --- Fields: position is from 1 ---

Field4* d4field(Data4& data, std::string_view name);  // nullptr with kErrorFieldName
Field4* d4fieldJ(Data4& data, int position);
std::string f4name(const Field4& field);
char f4type(const Field4& field);
int f4len(const Field4& field);
int f4decimals(const Field4& field);
Data4& f4data(const Field4& field);
int f4number(const Field4& field);       // position from 1
const char* f4ptr(const Field4& field);  // the field's bytes in the buffer, f4len long
long f4long(const Field4& field);        // decimals dropped; 0 when blank or no number
double f4double(const Field4& field);
// Exact value of a numeric field (or of a B field, rounded to four decimals).
Currency f4currency(const Field4& field);
// Assignments check the value and leave the field alone when it does not fit: kErrorFieldValue. f4assignNVB
// blank-pads text; on N and D fields it takes what the table stores.
int f4assignNVB(Field4& field, std::string_view text);
int f4assignLong(Field4& field, long value);
int f4assignDouble(Field4& field, double value);
int f4assignCurrency(Field4& field, Currency value);
std::string f4memoPtr(Field4& field);  // the whole memo; kErrorMemo in the error code when unreadable
std::size_t f4memoLen(Field4& field);
int f4memoAssign(Field4& field, std::string_view text);
int f4memoAssignN(Field4& field, std::string_view bytes);  // as binary data

// Formats "CCYYMMDD" by a pattern such as "mm/dd/ccyy"; "" for a blank date.
std::string date4format(std::string_view stored, std::string_view pattern);

}  // namespace tallwick::engine
